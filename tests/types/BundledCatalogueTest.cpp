#include <map>
#include <set>

#include "../TestSupport.h"
#include "foundation/Numbers.h"
#include "types/CSNVTType.h"
#include "types/SnvtCatalogue.h"

namespace kolvane {
namespace {

class BundledCatalogueTest : public ::testing::Test {
 protected:
  test::ScopedCatalogue catalogue_ =
      test::ScopedCatalogue::FromFile(KOLVANE_SOURCE_DIR "/examples/snvts.xml");
};

TEST_F(BundledCatalogueTest, EveryTypeLoadsCleanly) {
  test::MessageBoxRecorder recorder;
  const auto ids = internal::SnvtIdentifiers();
  ASSERT_GT(ids.size(), 50u);
  std::set<std::string> kinds;
  for (const auto& id : ids) {
    CSNVTType type;
    type.Load(id);
    EXPECT_EQ(type.ISNVType_Name(), id);
    EXPECT_NE(type.ISNVType_LUIType(), "") << id;
    kinds.insert(type.ISNVType_GenType());
    if (type.ISNVType_GenType() == "Enum") EXPECT_FALSE(type.StateTexts().empty()) << id;
  }
  EXPECT_EQ(kinds, (std::set<std::string>{"Bitfield", "Enum", "Float", "SignedNumeric", "Struct",
                                          "Textual", "UnsignedNumeric"}));
  EXPECT_TRUE(recorder.boxes.empty());

  CSNVTType temp;
  temp.Load("temp_p");
  EXPECT_EQ(temp.ISNVType_GenType(), "SignedNumeric");
  EXPECT_EQ(temp.ISNVType_Length(), 2);
  EXPECT_EQ(temp.ISNVType_ACoef(), 1);
  EXPECT_EQ(temp.ISNVType_BCoef(), -2);
  EXPECT_EQ(temp.ISNVType_CCoef(), 0);
  EXPECT_EQ(temp.ISNVType_InvalidValue(), "327.67");
  CSNVTType occupancy;
  occupancy.Load("occupancy");
  EXPECT_EQ(occupancy.ISNVType_GenType(), "Enum");
  EXPECT_EQ(occupancy.GetState("1"), "(1,OC_UNOCCUPIED)");
  CSNVTType sw;
  sw.Load("switch");
  EXPECT_EQ(sw.ISNVType_GenType(), "Struct");
}

// Length of a type: a structure's is the sum of its fields', recursively.
int32_t FieldLength(const std::string& id, int depth = 0) {
  CSNVTType type;
  type.Load(id);
  if (type.ISNVType_GenType() != "Struct") return type.ISNVType_Length();
  if (depth > 8) return -1000;  // a structure that contains itself
  int32_t sum = 0;
  for (pugi::xml_node field : internal::FindSnvtChild(id, "Fields").children()) {
    if (field.type() == pugi::node_element) sum += FieldLength(field.text().get(), depth + 1);
  }
  return sum;
}

TEST_F(BundledCatalogueTest, StructureLengthsAreTheSumOfTheirFields) {
  const auto ids = internal::SnvtIdentifiers();
  const std::set<std::string> known(ids.begin(), ids.end());
  for (const auto& id : ids) {
    CSNVTType type;
    type.Load(id);
    if (type.ISNVType_GenType() != "Struct") continue;
    pugi::xml_node fields = internal::FindSnvtChild(id, "Fields");
    EXPECT_TRUE(fields.find_child([](pugi::xml_node n) { return n.type() == pugi::node_element; }))
        << id << " has no fields";
    for (pugi::xml_node field : fields.children()) {
      if (field.type() != pugi::node_element) continue;
      EXPECT_TRUE(known.count(field.text().get())) << id << "." << field.name();
    }
    const double length = ParseNumber(internal::FindSnvtChild(id, "LENGTH").text().get());
    EXPECT_EQ(length, FieldLength(id)) << id;
  }
}

}  // namespace
}  // namespace kolvane
