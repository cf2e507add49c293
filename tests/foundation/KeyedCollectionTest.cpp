#include "foundation/KeyedCollection.h"

#include "../TestSupport.h"

namespace kolvane {
namespace {

using test::ErrorNumberOf;

TEST(KeyedCollectionTest, KeysIgnoreCaseAndErrorsLeaveItUnchanged) {
  KeyedCollection<int> items;
  items.Add("Beta", 2);
  items.Add("alpha", 1);
  EXPECT_EQ(items.ItemAt(1), 2);
  EXPECT_EQ(items.KeyAt(2), "alpha");
  EXPECT_EQ(items.Item("BETA"), 2);
  EXPECT_EQ(ErrorNumberOf([&] { items.Add("beta", 9); }), 457);
  EXPECT_EQ(ErrorNumberOf([&] { items.Item("gamma"); }), 5);
  EXPECT_EQ(ErrorNumberOf([&] { items.Remove("gamma"); }), 5);
  for (int32_t position : {0, 3, -1}) {
    EXPECT_EQ(ErrorNumberOf([&] { items.ItemAt(position); }), 9) << position;
    EXPECT_EQ(ErrorNumberOf([&] { items.RemoveAt(position); }), 9) << position;
  }
  EXPECT_EQ(items.Count(), 2);
  EXPECT_EQ(items.Item("beta"), 2);
}

TEST(KeyedCollectionTest, RemovingInTheMiddleKeepsLaterItemsReachable) {
  KeyedCollection<std::string> items;
  for (std::string key : {"a", "b", "c", "d", "e"}) items.Add(key, key + "!");
  items.Remove("B");
  items.RemoveAt(2);  // "c"
  ASSERT_EQ(items.Count(), 3);
  const std::string left[] = {"a", "d", "e"};
  for (int32_t position = 1; position <= 3; ++position) {
    EXPECT_EQ(items.KeyAt(position), left[position - 1]);
    EXPECT_EQ(items.Item(left[position - 1]), left[position - 1] + "!");
  }
  EXPECT_EQ(items.Find("c"), nullptr);
  items.Add("b", "again");
  EXPECT_EQ(items.ItemAt(4), "again");
  EXPECT_EQ(items.Item("e"), "e!");
}

}  // namespace
}  // namespace kolvane
