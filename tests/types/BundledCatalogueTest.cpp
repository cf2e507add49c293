#include <set>

#include "../TestSupport.h"
#include "foundation/Numbers.h"
#include "types/CSNVTType.h"
#include "types/SnvtCatalogue.h"

namespace kolvane {
namespace {

using test::LoadedType;

// Length of a type: a structure's is the sum of its fields' lengths, recursively.
int32_t FieldLength(const std::string& id) {
  const CSNVTType type = LoadedType(id);
  if (type.ISNVType_GenType() != "Struct") return type.ISNVType_Length();
  int32_t sum = 0;
  for (pugi::xml_node field : internal::FindSnvtChild(id, "Fields").children()) {
    if (field.type() == pugi::node_element) sum += FieldLength(field.text().get());
  }
  return sum;
}

TEST(BundledCatalogueTest, EveryTypeLoadsAndStructureLengthsAddUp) {
  test::ScopedCatalogue catalogue(KOLVANE_SOURCE_DIR "/examples/snvts.xml", true);
  test::MessageBoxRecorder recorder;
  const auto ids = internal::SnvtIdentifiers();
  std::set<std::string> kinds;
  for (const auto& id : ids) {
    const CSNVTType type = LoadedType(id);
    EXPECT_EQ(type.ISNVType_Name(), id);
    kinds.insert(type.ISNVType_GenType());
    if (type.ISNVType_GenType() != "Struct") continue;
    for (pugi::xml_node field : internal::FindSnvtChild(id, "Fields").children()) {
      if (field.type() != pugi::node_element) continue;
      EXPECT_TRUE(internal::FindSnvtElement(field.text().get())) << id << "." << field.name();
    }
    EXPECT_EQ(ParseNumber(internal::FindSnvtChild(id, "LENGTH").text().get()), FieldLength(id))
        << id;
  }
  EXPECT_EQ(kinds, (std::set<std::string>{"Bitfield", "Enum", "Float", "SignedNumeric", "Struct",
                                          "Textual", "UnsignedNumeric"}));
  EXPECT_TRUE(recorder.boxes.empty());

  const CSNVTType temp = LoadedType("temp_p");
  EXPECT_EQ(std::vector({temp.ISNVType_Length(), temp.ISNVType_ACoef(), temp.ISNVType_BCoef(),
                         temp.ISNVType_CCoef()}),
            std::vector({2, 1, -2, 0}));
  EXPECT_EQ(temp.ISNVType_GenType() + " " + temp.ISNVType_InvalidValue(), "SignedNumeric 327.67");
  EXPECT_EQ(LoadedType("occupancy").GetState("1"), "(1,OC_UNOCCUPIED)");
  EXPECT_EQ(LoadedType("switch").ISNVType_GenType(), "Struct");
}

}  // namespace
}  // namespace kolvane
