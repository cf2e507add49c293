#include "types/NvoTable.h"

#include "../TestSupport.h"

namespace kolvane {
namespace {

using internal::NvoTable;

NvoTable TableOf(const char* xml) {
  pugi::xml_document document;
  EXPECT_TRUE(document.load_string(xml));
  return NvoTable(document);  // the document ends here: the table must not need it
}

TEST(NvoTableTest, TypeNodeNamesAndIdentifiers) {
  for (const char* name : {"SNVT_a", "SNVT_", "SNVT_temp_p"})
    EXPECT_TRUE(internal::IsTypeNodeName(name)) << name;
  for (const char* name : {"snvt_a", "SNVT", "SNVTa", "xSNVT_a", "", "Snvt_a"}) {
    EXPECT_FALSE(internal::IsTypeNodeName(name)) << name;
  }
  const std::pair<const char*, const char*> ids[] = {
      {"SNVT_temp_p", "temp_p"}, {"abc", ""}, {"SNVT_", ""}, {"a_b_c", "b_c"}, {"_x", "x"}};
  for (const auto& [name, id] : ids) EXPECT_EQ(internal::NodeIdentifier(name), id) << name;
}

TEST(NvoTableTest, ListsBothWays) {
  const NvoTable table = TableOf(
      "<NVOTable><SNVT_a><SNVT_5/><SNVT_x/></SNVT_a>"
      "<SNVT_12><SNVT_5/><snvt_5/><Other/></SNVT_12><SNVT_b><SNVT_a/></SNVT_b></NVOTable>");
  EXPECT_EQ(table.OutputsListing("5"), "a,12");
  // Listed by the single output "a": ",a" is only 2 characters, so the comma stays.
  EXPECT_EQ(table.OutputsListing("x"), ",a");
  EXPECT_EQ(table.OutputsListing("a"), ",b");
  EXPECT_EQ(table.OutputsListing("nothing"), "");
  EXPECT_EQ(table.OutputsListing("12"), "");
  EXPECT_EQ(table.CompatibleTypes("a"), "5,x");
  EXPECT_EQ(table.CompatibleTypes("12"), "5");
  EXPECT_EQ(table.CompatibleTypes("b"), "a");
  EXPECT_EQ(table.CompatibleTypes("5"), "");
  EXPECT_EQ(table.CompatibleTypes("missing"), "");

  const NvoTable single = TableOf("<NVOTable><SNVT_5><SNVT_q/></SNVT_5></NVOTable>");
  EXPECT_EQ(single.OutputsListing("q"), ",5");
  EXPECT_EQ(single.CompatibleTypes("5"), "q");

  const NvoTable longer = TableOf("<NVOTable><SNVT_ab><SNVT_q/></SNVT_ab></NVOTable>");
  EXPECT_EQ(longer.OutputsListing("q"), "ab");
}

TEST(NvoTableTest, TheFirstOfARepeatedOutputWins) {
  const NvoTable table = TableOf(
      "<NVOTable><SNVT_out><SNVT_1/></SNVT_out><SNVT_out><SNVT_2/><SNVT_3/></SNVT_out>"
      "<SNVT_empty/></NVOTable>");
  EXPECT_EQ(table.CompatibleTypes("out"), "1");
  EXPECT_EQ(table.CompatibleTypes("empty"), "");
  EXPECT_EQ(table.OutputsListing("1"), "out");
  EXPECT_EQ(table.OutputsListing("2"), "out");
}

}  // namespace
}  // namespace kolvane
