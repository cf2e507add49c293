// The bundled catalogue as the library reads it: every type loads, numbers convert to the raw bytes
// their scaling gives, structures add up, enumeration defaults name states, and well-known types
// carry the index and scaling the published facts give.

#include <cmath>
#include <cstring>
#include <random>
#include <sstream>

#include "conversion/SNVTDataConversion.h"
#include "foundation/Numbers.h"
#include "host/CUtility.h"
#include "types/SnvtCatalogue.h"

#include "../TestSupport.h"

namespace kolvane::test {
namespace {

// The raw bytes of count bytes of an integer, most significant first (two's complement).
std::string Hex(int64_t raw, int32_t count) {
  std::string text;
  for (int32_t i = count - 1; i >= 0; --i) {
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02X", static_cast<unsigned>((raw >> (8 * i)) & 0xFF));
    text += digits;
  }
  return text;
}

// The raw integer of an engineering value: value = A x 10^B x (raw + C).
int64_t RawOf(double value, const ISNVType& type) {
  const double step = type.ISNVType_ACoef() * std::pow(10.0, type.ISNVType_BCoef());
  return std::llround(value / step - type.ISNVType_CCoef());
}

// The bytes of a hexadecimal text.
std::vector<uint8_t> ToBytes(const std::string& hex) {
  std::vector<uint8_t> bytes;
  for (size_t i = 0; i + 1 < hex.size(); i += 2) {
    bytes.push_back(static_cast<uint8_t>(std::stoi(hex.substr(i, 2), nullptr, 16)));
  }
  return bytes;
}

class CatalogueTest : public ::testing::Test {
 protected:
  MessageBoxRecorder boxes;
  ScopedDecimalSeparator point{"."};
  ScopedCatalogue catalogue{kBundledCatalogue, true};
};

// Every type loads without a message; every number converts its minimum, its maximum and one
// step above the minimum to the bytes its scaling gives, at every width.
TEST_F(CatalogueTest, EveryTypeLoadsAndNumbersConvertToTheirScaledBytes) {
  const auto ids = internal::SnvtIdentifiers();
  ASSERT_GT(ids.size(), 400u);
  int standard = 0;
  int checked = 0;
  for (const std::string& id : ids) {
    const auto type = CSNVTType::Shared(id);
    ASSERT_NE(type->Kind(), TypeKind::kUnknown) << id;
    if (!internal::FindSnvtElement(id).attribute("INDEX").empty()) ++standard;
    if (type->Kind() != TypeKind::kSignedNumeric && type->Kind() != TypeKind::kUnsignedNumeric) {
      continue;
    }
    const double low = ParseNumber(type->ISNVType_Min());
    const double high = ParseNumber(type->ISNVType_Max());
    EXPECT_LE(low, high) << id;
    const double step = type->ISNVType_ACoef() * std::pow(10.0, type->ISNVType_BCoef());
    for (const double value : {low, high, low + step}) {
      const int64_t raw = RawOf(value, *type);
      const std::string text = SNVTDataConversion::LocalizeNumber(GeneralText(value, 15, "."));
      EXPECT_EQ(SNVTDataConversion::TypedValueToRaw(text, *type),
                Hex(raw, type->ISNVType_Length()))
          << id << " " << text;
      ++checked;
    }
  }
  EXPECT_TRUE(boxes.boxes.empty()) << std::get<0>(boxes.boxes.front());
  EXPECT_GE(standard, 180);
  EXPECT_GT(checked, 500);
}

// Floats go out as IEEE single precision, most significant byte first.
TEST_F(CatalogueTest, FloatsConvertToSinglePrecisionBytes) {
  int checked = 0;
  for (const std::string& id : internal::SnvtIdentifiers()) {
    const auto type = CSNVTType::Shared(id);
    if (type->Kind() != TypeKind::kFloat) continue;
    for (const std::string& limit : {type->ISNVType_Min(), type->ISNVType_Max()}) {
      if (limit.empty()) continue;
      const auto single = static_cast<float>(ParseNumber(limit));
      uint32_t bits = 0;
      std::memcpy(&bits, &single, sizeof bits);
      EXPECT_EQ(SNVTDataConversion::TypedValueToRaw(limit, *type), Hex(bits, 4)) << id;
      ++checked;
    }
  }
  EXPECT_GT(checked, 40);
}

// A structure's fields add up to the length the catalogue gives it; every enumeration's default
// (the catalogue's, or the one the utility assumes) names one of its states.
TEST_F(CatalogueTest, StructuresAddUpAndEnumerationDefaultsNameStates) {
  const auto owner = std::make_shared<FakeOwner>(3);
  int structures = 0;
  for (const std::string& id : internal::SnvtIdentifiers()) {
    const auto type = CSNVTType::Shared(id);
    if (type->Kind() == TypeKind::kStruct) {
      const auto fields = BuildFields(owner, id);
      EXPECT_EQ(std::to_string(fields->IFields_Length()), internal::SnvtChildText(id, "LENGTH"))
          << id;
      EXPECT_GT(fields->IFields_Count(), 0) << id;
      ++structures;
    }
    if (type->Kind() == TypeKind::kEnum) {
      const std::string declared = internal::SnvtChildText(id, "DEFAULT");
      if (!declared.empty()) {
        EXPECT_FALSE(SNVTDataConversion::EnumStateName(declared, type->ISNVType_EnumDesc()).empty())
            << id;
      }
      const std::string assumed = CUtility().DefaultValue(type);
      EXPECT_NE(type->ISNVType_EnumDesc().find("," + assumed + ";"), std::string::npos) << id;
      // The invalid state is there too.
      EXPECT_NE(type->ISNVType_EnumDesc().find("-1,"), std::string::npos) << id;
    }
  }
  EXPECT_GT(structures, 70);
  EXPECT_TRUE(boxes.boxes.empty());
}

// Sets every leaf field below fields to the text value_of gives for its type.
template <class ValueOf>
void FillFields(CFields& fields, ValueOf value_of) {
  for (const auto& entry : fields.Items()) {
    if (const auto inner = entry.item->Fields()) {
      FillFields(*inner, value_of);
    } else {
      entry.item->IField_Value(value_of(*entry.item->Type()));
    }
  }
}

// The last state of an enumeration description ("0,OFF;1,ON;" gives ON).
std::string LastState(const std::string& description) {
  const std::string entries = description.substr(0, description.size() - 1);
  return entries.substr(entries.rfind(',') + 1);
}

// A structure whose every field holds a value gives as many bytes as the catalogue says the
// structure has: with every field at its largest value (the longest text, the last state) and at
// its smallest. The union types' bytes are fields, so they fill in full too.
TEST_F(CatalogueTest, StructuresOfFullValuesGiveTheirWholeLength) {
  const auto owner = std::make_shared<FakeOwner>(3);
  int structures = 0;
  for (const bool largest : {true, false}) {
    for (const std::string& id : internal::SnvtIdentifiers()) {
      if (CSNVTType::Shared(id)->Kind() != TypeKind::kStruct) continue;
      const auto fields = BuildFields(owner, id);
      FillFields(*fields, [largest](const CSNVTType& type) -> std::string {
        switch (type.Kind()) {
          case TypeKind::kEnum:
            return largest ? LastState(type.ISNVType_EnumDesc()) : "Invalid";
          case TypeKind::kTextual:
            return std::string(static_cast<size_t>(largest ? type.ISNVType_Length() - 1 : 0), 'x');
          case TypeKind::kFloat:
          case TypeKind::kSignedNumeric:
          case TypeKind::kUnsignedNumeric:
          case TypeKind::kBitfield:
            return largest ? type.ISNVType_Max() : type.ISNVType_Min();
          case TypeKind::kStruct:
          case TypeKind::kUnknown:
            return "";
        }
        return "";
      });
      std::string raw;
      const int32_t error = ErrorNumberOf([&] { raw = fields->CheckedRawText(); });
      EXPECT_EQ(error, 0) << id << (largest ? " largest" : " smallest");
      EXPECT_EQ(std::to_string(raw.size() / 2), internal::SnvtChildText(id, "LENGTH"))
          << id << " " << raw;
      // The routine a host calls gives the same bytes.
      EXPECT_EQ(fields->RawText(), raw) << id;
      structures += largest ? 1 : 0;
    }
  }
  EXPECT_GE(structures, 90);
}

// The twelve standard types that hold a union load, and their union's bytes are fields a value
// sets in full: SNVT_switch_2 with a level of 50 % (100 as the setting byte) and scene 3.
TEST_F(CatalogueTest, UnionTypesHoldTheirUnionAsBytes) {
  for (const char* id : {"color_2", "ctrl_resp", "dev_fault", "dev_maint", "dev_status", "file_req",
                         "file_status", "pos_ctrl", "rac_ctrl", "rac_req", "switch_2",
                         "time_zone"}) {
    EXPECT_EQ(CSNVTType::Shared(id)->Kind(), TypeKind::kStruct) << id;
    EXPECT_FALSE(internal::FindSnvtElement(id).attribute("INDEX").empty()) << id;
  }
  const auto owner = std::make_shared<FakeOwner>(3);
  const auto fields = BuildFields(owner, "switch_2", "{ SW_SET_LEVEL  100  3 }");
  EXPECT_EQ(fields->CheckedRawText(), "056403");
  EXPECT_EQ(FieldAt(fields, "setting")->IField_Offset(), 1);
  EXPECT_TRUE(boxes.boxes.empty());
}

// Raw bytes read as a value text give the same bytes back, for every type of every kind but
// structures: every raw integer a numeric type's limits allow at its edges and 50 between, every
// state, floats of random bits, texts of every Windows-1252 code.
TEST_F(CatalogueTest, RawBytesReadAsValuesGiveTheSameBytesBack) {
  std::mt19937_64 random(7);
  int values = 0;
  for (const std::string& id : internal::SnvtIdentifiers()) {
    const auto type = CSNVTType::Shared(id);
    const int32_t length = type->ISNVType_Length();
    std::vector<std::vector<uint8_t>> samples;
    const auto bytes_of = [length](uint64_t raw) {
      std::vector<uint8_t> bytes(static_cast<size_t>(length));
      for (int32_t i = length - 1; i >= 0; --i, raw >>= 8) bytes[static_cast<size_t>(i)] = raw & 0xFF;
      return bytes;
    };
    switch (type->Kind()) {
      case TypeKind::kSignedNumeric:
      case TypeKind::kUnsignedNumeric:
      case TypeKind::kBitfield:
      case TypeKind::kFloat: {
        for (const std::string& limit : {type->ISNVType_Min(), type->ISNVType_Max()}) {
          if (!limit.empty()) samples.push_back(ToBytes(SNVTDataConversion::CheckedValueToRaw(limit, *type)));
        }
        for (int i = 0; i < 50; ++i) {
          std::vector<uint8_t> bytes = bytes_of(random());
          if (type->Kind() == TypeKind::kFloat && (bytes[0] & 0x7F) == 0x7F && (bytes[1] & 0x80)) {
            continue;  // NaN and the infinities read as "Invalid" or overflow
          }
          samples.push_back(bytes);
        }
        break;
      }
      case TypeKind::kEnum: {
        std::istringstream entries(type->ISNVType_EnumDesc());
        for (std::string entry; std::getline(entries, entry, ';');) {
          samples.push_back({static_cast<uint8_t>(std::stoi(entry.substr(0, entry.find(','))))});
        }
        break;
      }
      case TypeKind::kTextual: {
        std::vector<uint8_t> bytes(static_cast<size_t>(length), 0);
        for (size_t i = 0; i + 1 < bytes.size(); ++i) bytes[i] = static_cast<uint8_t>(0x21 + (i * 7) % 0xDE);
        samples.push_back(bytes);
        break;
      }
      case TypeKind::kStruct:
      case TypeKind::kUnknown:
        continue;
    }
    for (const auto& bytes : samples) {
      const std::string value = SNVTDataConversion::RawToValue(bytes, *type);
      std::string hex;
      for (const uint8_t byte : bytes) hex += Hex(byte, 1);
      // Bytes outside a type's limits still read and write back, as long as the width holds them.
      const std::string back = value == "Invalid"
                                   ? SNVTDataConversion::CheckedValueToRaw(type->ISNVType_InvalidValue().empty() ? value : type->ISNVType_InvalidValue(), *type)
                                   : SNVTDataConversion::CheckedValueToRaw(value, *type);
      EXPECT_EQ(back, hex) << id << " " << value;
      ++values;
    }
  }
  EXPECT_GT(values, 10000);
  // The bytes of a property in a device file: 0DAC is 35 °C, 7FFF the invalid value.
  EXPECT_EQ(SNVTDataConversion::RawToValue({0x0D, 0xAC}, *CSNVTType::Shared("temp_p")), "35");
  EXPECT_EQ(SNVTDataConversion::RawToValue({0x7F, 0xFF}, *CSNVTType::Shared("temp_p")), "Invalid");
  EXPECT_EQ(SNVTDataConversion::RawToValue({0x02, 0x58}, *CSNVTType::Shared("time_sec")), "60");
  EXPECT_EQ(SNVTDataConversion::RawToValue({0x01}, *CSNVTType::Shared("occupancy")), "OC_UNOCCUPIED");
  EXPECT_EQ(SNVTDataConversion::RawToValue({0xBF, 0x80, 0, 0}, *CSNVTType::Shared("temp_f")), "-1");
  EXPECT_EQ(ErrorNumberOf([] { SNVTDataConversion::RawToValue({1}, *CSNVTType::Shared("temp_p")); }), 5);
}

// Index numbers, kinds, lengths and scalings of well-known types, as the published facts give them.
TEST_F(CatalogueTest, WellKnownTypesCarryThePublishedFacts) {
  struct Fact {
    const char* id;
    int index;
    TypeKind kind;
    int32_t length, a, b, c;
  };
  const Fact facts[] = {
      {"temp_p", 105, TypeKind::kSignedNumeric, 2, 1, -2, 0},
      {"temp", 39, TypeKind::kUnsignedNumeric, 2, 1, -1, -2740},
      {"temp_diff_p", 147, TypeKind::kSignedNumeric, 2, 1, -2, 0},
      {"lev_percent", 81, TypeKind::kSignedNumeric, 2, 5, -3, 0},
      {"lev_cont", 21, TypeKind::kUnsignedNumeric, 1, 5, -1, 0},
      {"count", 8, TypeKind::kUnsignedNumeric, 2, 1, 0, 0},
      {"count_inc", 9, TypeKind::kSignedNumeric, 2, 1, 0, 0},
      {"count_32", 183, TypeKind::kUnsignedNumeric, 4, 1, 0, 0},
      {"amp", 1, TypeKind::kSignedNumeric, 2, 1, -1, 0},
      {"volt_ac", 138, TypeKind::kUnsignedNumeric, 2, 1, 0, 0},
      {"power_kilo", 28, TypeKind::kUnsignedNumeric, 2, 1, -1, 0},
      {"elec_kwh_l", 146, TypeKind::kSignedNumeric, 4, 1, -1, 0},
      {"rpm", 102, TypeKind::kUnsignedNumeric, 2, 1, 0, 0},
      {"press_p", 113, TypeKind::kSignedNumeric, 2, 1, 0, 0},
      {"flow_p", 161, TypeKind::kUnsignedNumeric, 2, 1, -2, 0},
      {"lux", 79, TypeKind::kUnsignedNumeric, 2, 1, 0, 0},
      {"ppm", 29, TypeKind::kUnsignedNumeric, 2, 1, 0, 0},
      {"abs_humid", 160, TypeKind::kUnsignedNumeric, 2, 1, -2, 0},
      {"time_sec", 107, TypeKind::kUnsignedNumeric, 2, 1, -1, 0},
      {"angle_deg", 104, TypeKind::kSignedNumeric, 2, 2, -2, 0},
      {"pwr_fact", 98, TypeKind::kSignedNumeric, 2, 5, -5, 0},
      {"ph", 125, TypeKind::kSignedNumeric, 2, 1, -3, 0},
      {"temp_f", 63, TypeKind::kFloat, 4, 1, 0, 0},
      {"str_asc", 36, TypeKind::kTextual, 31, 0, 0, 0},
      {"state", 83, TypeKind::kBitfield, 2, 1, 0, 0},
      {"occupancy", 109, TypeKind::kEnum, 1, 0, 0, 0},
      {"switch", 95, TypeKind::kStruct, 0, 0, 0, 0},
      {"temp_setpt", 106, TypeKind::kStruct, 0, 0, 0, 0},
  };
  for (const Fact& fact : facts) {
    const auto type = CSNVTType::Shared(fact.id);
    EXPECT_EQ(internal::FindSnvtElement(fact.id).attribute("INDEX").as_int(), fact.index)
        << fact.id;
    EXPECT_EQ(type->Kind(), fact.kind) << fact.id;
    if (fact.kind == TypeKind::kStruct || fact.kind == TypeKind::kEnum) continue;
    EXPECT_EQ(type->ISNVType_Length(), fact.length) << fact.id;
    if (fact.kind == TypeKind::kTextual) continue;
    EXPECT_EQ(std::tuple(type->ISNVType_ACoef(), type->ISNVType_BCoef(), type->ISNVType_CCoef()),
              std::tuple(fact.a, fact.b, fact.c))
        << fact.id;
  }
  // Structures reuse the standard types the facts name, and carry bit fields with their bits.
  EXPECT_EQ(internal::FindSnvtChild("switch", "Fields").child_value("value"), std::string("lev_cont"));
  EXPECT_EQ(internal::FindSnvtChild("temp_setpt", "Fields").child_value("occupied_cool"),
            std::string("temp_p"));
  const pugi::xml_node bits = internal::FindSnvtChild("state", "Bits");
  EXPECT_EQ(std::distance(bits.children().begin(), bits.children().end()), 16);
  EXPECT_STREQ(bits.child("bit9").attribute("OFFSET").value(), "9");
}

}  // namespace
}  // namespace kolvane::test
