#pragma once

#include <string>
#include <string_view>

#include "foundation/Export.h"

namespace kolvane {

// ASCII upper case of text; other bytes (UTF-8 sequences included) are left as they are.
KOLVANE_API std::string ToUpper(std::string_view text);

// ASCII lower case of text; other bytes are left as they are.
KOLVANE_API std::string ToLower(std::string_view text);

// Equal without regard to ASCII case.
KOLVANE_API bool EqualsNoCase(std::string_view a, std::string_view b);

// Text without leading and trailing blanks (spaces only, as Visual Basic's Trim).
KOLVANE_API std::string_view TrimBlanks(std::string_view text);

}  // namespace kolvane
