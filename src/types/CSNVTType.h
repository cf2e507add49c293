#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <pugixml.hpp>

#include "foundation/KeyedCollection.h"
#include "interfaces/ISNVType.h"
#include "types/TypeKind.h"

namespace kolvane {

// A standard network variable type read from the type catalogue.
class CSNVTType final : public ISNVType {
 public:
  std::string ISNVType_ID() const override;
  int32_t ISNVType_K4Region() const override;
  int32_t ISNVType_Factor() const override;
  int32_t ISNVType_ACoef() const override;
  int32_t ISNVType_BCoef() const override;
  int32_t ISNVType_CCoef() const override;
  std::string ISNVType_GenType() const override;
  std::string ISNVType_LUIType() const override;
  std::string ISNVType_InvalidValue() const override;
  std::string ISNVType_Name() const override;
  std::string ISNVType_Min() const override;
  std::string ISNVType_Max() const override;
  std::string ISNVType_Units() const override;
  std::string ISNVType_BACnetUnits() const override;
  std::string ISNVType_EnumDesc() const override;
  int32_t ISNVType_Length() const override;
  bool ISNVType_HasField() const override;

  // The kind GenType names, parsed when it is set.
  TypeKind Kind() const { return kind_; }

  // The state text stored under key (the state's value as text), e.g. "(1,ON)"; error 5 when
  // there is none.
  std::string GetState(const std::string& key) const;

  // The state texts in catalogue order, e.g. "(0,OFF)", "(1,ON)".
  std::vector<std::string> StateTexts() const;

  // Reads the type identifier from the catalogue. Never raises: a type the catalogue lacks keeps
  // only its ID, and an error while reading (a duplicate state value, an unreadable attribute)
  // ends the reading with what was read so far.
  void Load(const std::string& identifier);
  // The type identifier of the current catalogue, read once and shared by every caller (the
  // bad-type message is shown on every call, as by Load). Callers must not change it: change a
  // copy.
  static std::shared_ptr<CSNVTType> Shared(const std::string& identifier);
  // type with its length set to length: type itself when it has that length already, else a
  // copy shared by every caller that asks for the same.
  static std::shared_ptr<CSNVTType> WithLength(const std::shared_ptr<CSNVTType>& type,
                                               int32_t length);

  // Sets EnumDesc and rebuilds the states from it; error 457 when two states share a value.
  void SetEnumDesc(const std::string& text);
  // Sets the kind.
  void SetGenType(const std::string& text);
  // Sets the length in bytes.
  void SetLength(int32_t length);
  // Sets the minimum.
  void SetMin(const std::string& text);
  // Sets the maximum.
  void SetMax(const std::string& text);
  // Accepted and ignored: HasField stays false.
  void SetHasField(bool value);

 private:
  void ReadType(pugi::xml_node type);
  void ReadKind(pugi::xml_node type);
  void ReadNumeric(pugi::xml_node type);
  void ReadTextual(pugi::xml_node type);
  void ReadEnumeration();
  void BuildStates();
  void ShowBadKind() const;

  std::string enum_desc_;
  std::string gen_type_;
  TypeKind kind_ = TypeKind::kUnknown;
  std::string invalid_value_;
  int32_t a_coef_ = 0;
  int32_t b_coef_ = 0;
  int32_t c_coef_ = 0;
  std::string id_;
  int32_t length_ = 0;
  std::string lui_type_;
  std::string min_;
  std::string max_;
  std::string units_;
  std::string bacnet_units_;
  std::string name_;
  int32_t factor_ = 0;
  int32_t k4_region_ = 0;
  KeyedCollection<std::string> states_;
  bool bad_kind_ = false;
};

// The kind of any type object: a catalogue type's parsed kind, else its GenType parsed.
TypeKind KindOf(const ISNVType& type);

}  // namespace kolvane
