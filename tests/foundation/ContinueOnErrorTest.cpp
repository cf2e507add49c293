#include "foundation/ContinueOnError.h"

#include "../TestSupport.h"

namespace kolvane {
namespace {

TEST(ContinueOnErrorTest, ReturnsTheErrorNumberAndKeepsEarlierChanges) {
  int steps = 0;
  EXPECT_EQ(ContinueOnError([&] { ++steps; }), 0);
  EXPECT_EQ(ContinueOnError([&] { ++steps, RaiseError(ErrorNumber::kDuplicateKey), ++steps; }),
            457);
  EXPECT_EQ(steps, 2);
  EXPECT_EQ(ContinueOnError([] { throw std::runtime_error("not ours"); }), 5);
  EXPECT_EQ(ContinueOnError([] { throw 6; }), 5);
}

}  // namespace
}  // namespace kolvane
