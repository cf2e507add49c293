#include "foundation/Globals.h"

#include <gtest/gtest.h>

namespace kolvane {
namespace {

TEST(GlobalsTest, GetToken) {
  EXPECT_EQ(Globals::GetToken("a|b|c", 0, "|"), "a");
}

}  // namespace
}  // namespace kolvane
