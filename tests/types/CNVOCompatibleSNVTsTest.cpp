#include "types/CNVOCompatibleSNVTs.h"

#include "../TestSupport.h"

namespace kolvane {
namespace {

// The identifiers of a list joined by ",", read without the utility.
std::string Ids(const ICompatibleSNVTs& list) {
  std::string text;
  for (const auto& entry : list.ICompatibleSNVTs_NewEnum()) {
    text += (text.empty() ? "" : ",") + entry->ICompatibleSNVT_ID();
  }
  return text;
}

std::shared_ptr<CNVOCompatibleSNVTs> ListOf(const std::string& text) {
  auto list = std::make_shared<CNVOCompatibleSNVTs>();
  list->ICompatibleSNVTs_Add(text);
  return list;
}

TEST(CNVOCompatibleSNVTsTest, AddSplitsAtCommasUntilAnEmptyToken) {
  const std::tuple<const char*, const char*, int32_t, int> cases[] = {
      // text, identifiers, count, yields
      {"temp_p", "temp_p", 1, 0},
      {"temp_p,temp_f,temp_p", "temp_p,temp_f", 2, 4},
      {"temp_p,TEMP_P", "temp_p", 1, 3},
      {"a,,b", "a", 1, 2},
      {",a", "", 0, 1},
      {"a,", "a", 1, 2},
      {"", "", 0, 0},
      {"a,b,c", "a,b,c", 3, 4}};
  for (const auto& [text, ids, count, yields] : cases) {
    test::YieldCounter counter;
    auto list = ListOf(text);
    EXPECT_EQ(Ids(*list), ids) << text;
    EXPECT_EQ(list->ICompatibleSNVTs_Count(), count) << text;
    EXPECT_EQ(counter.count, yields) << text;
  }
  auto list = ListOf("a,b");
  list->ICompatibleSNVTs_Add("B,c");
  list->ICompatibleSNVTs_Add("A");
  EXPECT_EQ(Ids(*list), "a,b,c");
}

TEST(CNVOCompatibleSNVTsTest, ItemsAreOneBasedAndRemoveNeedsAnEntry) {
  auto list = ListOf("a,b");
  EXPECT_EQ(list->ICompatibleSNVTs_Item(1)->ICompatibleSNVT_ID(), "a");
  EXPECT_EQ(list->ICompatibleSNVTs_Item(2)->ICompatibleSNVT_ID(), "b");
  for (int32_t position : {-1, 0, 3}) EXPECT_EQ(list->ICompatibleSNVTs_Item(position), nullptr);
  EXPECT_TRUE(list->ICompatibleSNVTs_Exists("A"));
  EXPECT_FALSE(list->ICompatibleSNVTs_Exists("c"));
  EXPECT_FALSE(list->ICompatibleSNVTs_Exists(""));

  EXPECT_EQ(test::ErrorNumberOf([&] { list->ICompatibleSNVTs_Remove("c"); }), 5);
  EXPECT_EQ(Ids(*list), "a,b");
  list->ICompatibleSNVTs_Remove("B");
  EXPECT_EQ(Ids(*list), "a");
  EXPECT_EQ(list->ICompatibleSNVTs_Item(2), nullptr);
}

TEST(CNVOCompatibleSNVTsTest, MergeAndCloneMakeIndependentLists) {
  auto mine = ListOf("a,b,c");
  auto other = ListOf("c,x,A");
  auto merged = mine->ICompatibleSNVTs_Merge(other);
  ASSERT_NE(merged, nullptr);
  EXPECT_EQ(Ids(*merged), "c,A");
  EXPECT_EQ(Ids(*mine), "a,b,c");
  EXPECT_EQ(Ids(*other), "c,x,A");
  EXPECT_EQ(Ids(*mine->ICompatibleSNVTs_Merge(ListOf(""))), "");
  EXPECT_EQ(test::ErrorNumberOf([&] { mine->ICompatibleSNVTs_Merge(nullptr); }), 91);

  auto empty = std::dynamic_pointer_cast<ICompatibleSNVTs>(ListOf("")->IClonable_Clone());
  ASSERT_NE(empty, nullptr);
  EXPECT_EQ(empty->ICompatibleSNVTs_Count(), 0);
  auto clone = std::dynamic_pointer_cast<ICompatibleSNVTs>(mine->IClonable_Clone());
  ASSERT_NE(clone, nullptr);
  EXPECT_EQ(Ids(*clone), "a,b,c");
  clone->ICompatibleSNVTs_Add("d");
  mine->ICompatibleSNVTs_Remove("a");
  EXPECT_EQ(Ids(*clone), "a,b,c,d");
  EXPECT_EQ(Ids(*mine), "b,c");
}

TEST(CNVOCompatibleSNVTsTest, ToStringNeedsTheUtility) {
  EXPECT_EQ(ListOf("a,b")->ICompatibleSNVTs_ToString(), "a,b");
  EXPECT_EQ(ListOf("")->ICompatibleSNVTs_ToString(), "");
  test::ScopedComponent none("Moraface.Utility", {});
  EXPECT_EQ(test::ErrorNumberOf([] { ListOf("a")->ICompatibleSNVTs_ToString(); }), 429);
}

}  // namespace
}  // namespace kolvane
