#include "foundation/HostServices.h"

#include "../TestSupport.h"

namespace kolvane {
namespace {

using test::ErrorNumberOf;

TEST(HostServicesTest, HandlersAreReplacedAndHandedBack) {
  {
    test::MessageBoxRecorder recorder(7);
    EXPECT_EQ(MsgBox("Disk full", vbExclamation, "Save"), 7);
    EXPECT_EQ(MsgBox("Plain"), 7);
    EXPECT_EQ(recorder.boxes, (std::vector<test::MessageBoxRecorder::Box>{{"Disk full", 48, "Save"},
                                                                          {"Plain", 0, ""}}));
    MessageBoxHandler handed_back = SetMessageBoxHandler(nullptr);  // the default again
    EXPECT_EQ(MsgBox("default"), vbOK);
    ASSERT_TRUE(handed_back);
    EXPECT_EQ(handed_back("back", 0, ""), 7);
    SetMessageBoxHandler(handed_back);
    EXPECT_EQ(MsgBox("recorded"), 7);
  }
  EXPECT_EQ(MsgBox("default handler"), vbOK);

  int calls = 0;
  YieldHandler previous = SetYieldHandler([&] { ++calls; });
  DoEvents();
  YieldHandler mine = SetYieldHandler(previous);
  DoEvents();
  ASSERT_TRUE(mine);
  mine();
  EXPECT_EQ(calls, 2);
}

TEST(HostServicesTest, CreateObjectFindsRegisteredFactoriesWithoutCase) {
  EXPECT_EQ(ErrorNumberOf([] { CreateObject("KolvaneTest.Thing"); }), 429);
  struct Thing final : IUnknown {};
  auto thing = std::make_shared<Thing>();
  RegisterClass("KolvaneTest.Thing", [thing] { return thing; });
  EXPECT_EQ(CreateObject("kolvanetest.THING"), thing);
  RegisterClass("KOLVANETEST.thing", nullptr);
  EXPECT_EQ(ErrorNumberOf([] { CreateObject("KolvaneTest.Thing"); }), 429);
  RegisterClass("KolvaneTest.Nothing", [] { return std::shared_ptr<IUnknown>(); });
  EXPECT_EQ(ErrorNumberOf([] { CreateObject("KolvaneTest.Nothing"); }), 429);
}

TEST(HostServicesTest, ComponentFolderCanBeOverriddenAndRestored) {
  const std::string library = ComponentFolder();
  EXPECT_TRUE(!library.empty() && std::filesystem::is_directory(library)) << library;
  SetComponentFolder("/tmp/elsewhere");
  EXPECT_EQ(ComponentFolder(), "/tmp/elsewhere");
  SetComponentFolder("");
  EXPECT_EQ(ComponentFolder(), library);
}

}  // namespace
}  // namespace kolvane
