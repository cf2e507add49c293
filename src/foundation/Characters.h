#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// Characters of UTF-8 texts: counting, cutting, and their codes in the Windows-1252 ("ANSI")
// code page that device texts use.
namespace kolvane {

// Length in bytes of the well-formed UTF-8 sequence that starts text (no overlong two-byte
// form, nothing past U+10FFFF); 0 when none does.
size_t Utf8SequenceLength(std::string_view text);

// Number of characters (code points) of a UTF-8 text; each invalid byte counts as one.
size_t CharacterCount(std::string_view text);

// The first count characters of a UTF-8 text.
std::string_view LeftCharacters(std::string_view text, size_t count);

// The Windows-1252 code of each character of a UTF-8 text; "?" (63) for a character the code
// page lacks and for each invalid byte.
std::vector<unsigned char> AnsiCodes(std::string_view text);

// The UTF-8 text of Windows-1252 codes; "?" for a code the page leaves undefined.
std::string FromAnsiCodes(const std::vector<unsigned char>& codes);

}  // namespace kolvane
