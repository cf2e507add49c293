#include "foundation/KeyedCollection.h"

#include "../TestSupport.h"

namespace kolvane {
namespace {

using test::ErrorNumberOf;

TEST(KeyedCollectionTest, KeysIgnoreCaseAndKeepInsertionOrder) {
  KeyedCollection<int> items;
  items.Add("Beta", 2);
  items.Add("alpha", 1);
  items.Add("GAMMA", 3);
  ASSERT_EQ(items.Count(), 3);
  EXPECT_EQ(items.ItemAt(1), 2);
  EXPECT_EQ(items.ItemAt(3), 3);
  EXPECT_EQ(items.KeyAt(2), "alpha");
  EXPECT_EQ(items.Item("BETA"), 2);
  EXPECT_EQ(items.Item("gamma"), 3);
  EXPECT_TRUE(items.Contains("ALPHA"));

  EXPECT_EQ(ErrorNumberOf([&] { items.Add("beta", 9); }), 457);
  EXPECT_EQ(items.Count(), 3);
  EXPECT_EQ(items.Item("beta"), 2);

  EXPECT_EQ(ErrorNumberOf([&] { items.Item("delta"); }), 5);
  EXPECT_EQ(items.Find("delta"), nullptr);
  EXPECT_EQ(ErrorNumberOf([&] { items.Remove("delta"); }), 5);
  for (int32_t position : {0, 4, -1}) {
    EXPECT_EQ(ErrorNumberOf([&] { items.ItemAt(position); }), 9) << position;
    EXPECT_EQ(ErrorNumberOf([&] { items.KeyAt(position); }), 9) << position;
    EXPECT_EQ(ErrorNumberOf([&] { items.RemoveAt(position); }), 9) << position;
  }
  EXPECT_EQ(items.Count(), 3);
}

TEST(KeyedCollectionTest, RemovingInTheMiddleKeepsLaterItemsReachable) {
  KeyedCollection<std::string> items;
  for (const char* key : {"a", "b", "c", "d", "e"}) items.Add(key, std::string(key) + "!");
  items.Remove("B");
  items.RemoveAt(2);  // "c"
  ASSERT_EQ(items.Count(), 3);
  const char* left[] = {"a", "d", "e"};
  for (int32_t position = 1; position <= 3; ++position) {
    const std::string key = left[position - 1];
    EXPECT_EQ(items.KeyAt(position), key);
    EXPECT_EQ(items.Item(key), key + "!");
  }
  EXPECT_FALSE(items.Contains("b"));
  EXPECT_FALSE(items.Contains("c"));
  items.Add("b", "again");
  EXPECT_EQ(items.ItemAt(4), "again");
  EXPECT_EQ(items.Item("e"), "e!");

  items.Clear();
  EXPECT_EQ(items.Count(), 0);
  EXPECT_EQ(items.Find("a"), nullptr);
  items.Add("a", "new");
  EXPECT_EQ(items.Item("A"), "new");
}

}  // namespace
}  // namespace kolvane
