#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "interfaces/IUtility.h"

namespace kolvane {

// The built-in "Moraface.Utility". Its rules:
class CUtility final : public IUtility {
 public:
  // Splits "{ a  b }" (one blank inside each brace, two between fields, as structure texts are
  // written) at the two-blank gaps, and plain "a b" at runs of blanks. Nested "{...}" stay one
  // field text; a brace form without any two-blank gap is split at single blanks. "" gives none.
  std::vector<std::string> SplitFields(const std::string& value) override;

  // The catalogue's "DEFAULT" child of the type when it has one (for an enumeration, given as a
  // state's value or name, the state's name). Otherwise by kind: numbers and bit fields "0"
  // (moved into the type's range when it excludes 0), an enumeration its state 0 or else its
  // first state, a structure the brace text of its fields' defaults (a structure nested deeper
  // than 32 levels, which only a type that contains itself makes, as "{}"), anything else "".
  std::string DefaultValue(const std::shared_ptr<ISNVType>& type) override;

  // "x;y" with "." or "," as decimal point; each coordinate rounded to the nearest integer,
  // ties to even; a missing or unreadable coordinate is 0. Error 6 beyond 32 bits.
  void ParseLocation(const std::string& text, int32_t& x, int32_t& y) override;

  // The identifiers joined by "," in list order.
  std::string CompatibleListText(const ICompatibleSNVTs& list) override;

  // A state name of the catalogue (any case; the first enumeration that has it) gives its
  // value; an integer text gives itself; a list entry "(1,ON)" gives its value; "Invalid" gives
  // -1 (0xFF on the wire). Error 5 for anything else.
  int32_t EnumStateNumber(const std::string& state) override;
};

}  // namespace kolvane
