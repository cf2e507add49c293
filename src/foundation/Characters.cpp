#include "foundation/Characters.h"

#include <iconv.h>

#include <cerrno>

namespace kolvane {

namespace {

constexpr unsigned char kQuestionMark = '?';

// Length in bytes of the UTF-8 sequence that starts text, or 1 for an invalid byte.
size_t SequenceLength(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  size_t length = 1;
  if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4;
  }
  if (length > text.size()) return 1;
  for (size_t i = 1; i < length; ++i) {
    if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) return 1;
  }
  return length;
}

bool IsValidSequence(std::string_view text, size_t length) {
  return length > 1 || static_cast<unsigned char>(text[0]) < 0x80;
}

// One converter per thread, opened on first use.
class AnsiConverter {
 public:
  AnsiConverter() : cd_(iconv_open("WINDOWS-1252", "UTF-8")) {}
  ~AnsiConverter() {
    if (cd_ != reinterpret_cast<iconv_t>(-1)) iconv_close(cd_);
  }
  AnsiConverter(const AnsiConverter&) = delete;
  AnsiConverter& operator=(const AnsiConverter&) = delete;

  // The code of one valid UTF-8 character.
  unsigned char Code(std::string_view character) {
    if (cd_ == reinterpret_cast<iconv_t>(-1)) return kQuestionMark;
    iconv(cd_, nullptr, nullptr, nullptr, nullptr);
    char* in = const_cast<char*>(character.data());
    size_t in_left = character.size();
    char out[4];
    char* out_ptr = out;
    size_t out_left = sizeof out;
    if (iconv(cd_, &in, &in_left, &out_ptr, &out_left) == static_cast<size_t>(-1) ||
        out_ptr - out != 1) {
      return kQuestionMark;
    }
    return static_cast<unsigned char>(out[0]);
  }

 private:
  iconv_t cd_;
};

}  // namespace

size_t Utf8SequenceLength(std::string_view text) {
  if (text.empty()) return 0;
  const size_t length = SequenceLength(text);
  return IsValidSequence(text, length) ? length : 0;
}

size_t CharacterCount(std::string_view text) {
  size_t count = 0;
  while (!text.empty()) {
    text.remove_prefix(SequenceLength(text));
    ++count;
  }
  return count;
}

std::string_view LeftCharacters(std::string_view text, size_t count) {
  size_t bytes = 0;
  for (size_t n = 0; n < count && bytes < text.size(); ++n) {
    bytes += SequenceLength(text.substr(bytes));
  }
  return text.substr(0, bytes);
}

std::string FromAnsiCodes(const std::vector<unsigned char>& codes) {
  // One converter per thread, the other way round.
  struct Decoder {
    iconv_t cd = iconv_open("UTF-8", "WINDOWS-1252");
    ~Decoder() {
      if (cd != reinterpret_cast<iconv_t>(-1)) iconv_close(cd);
    }
  };
  thread_local Decoder decoder;
  std::string text;
  for (const unsigned char code : codes) {
    if (code < 0x80) {
      text += static_cast<char>(code);
      continue;
    }
    char in_byte = static_cast<char>(code);
    char* in = &in_byte;
    size_t in_left = 1;
    char out[8];
    char* out_ptr = out;
    size_t out_left = sizeof out;
    if (decoder.cd == reinterpret_cast<iconv_t>(-1)) {
      text += static_cast<char>(kQuestionMark);
      continue;
    }
    iconv(decoder.cd, nullptr, nullptr, nullptr, nullptr);
    if (iconv(decoder.cd, &in, &in_left, &out_ptr, &out_left) == static_cast<size_t>(-1)) {
      text += static_cast<char>(kQuestionMark);  // a code the page leaves undefined
    } else {
      text.append(out, static_cast<size_t>(out_ptr - out));
    }
  }
  return text;
}

std::vector<unsigned char> AnsiCodes(std::string_view text) {
  thread_local AnsiConverter converter;
  std::vector<unsigned char> codes;
  while (!text.empty()) {
    const size_t length = SequenceLength(text);
    if (!IsValidSequence(text, length)) {
      codes.push_back(kQuestionMark);
    } else if (length == 1) {
      codes.push_back(static_cast<unsigned char>(text[0]));
    } else {
      codes.push_back(converter.Code(text.substr(0, length)));
    }
    text.remove_prefix(length);
  }
  return codes;
}

}  // namespace kolvane
