#include "foundation/HostServices.h"

#include <filesystem>

#include "../TestSupport.h"

namespace kolvane {
namespace {

using test::ErrorNumberOf;

class Thing final : public IUnknown {};

TEST(HostServicesTest, MessageBoxesGoToTheInstalledHandler) {
  {
    test::MessageBoxRecorder recorder(7);
    EXPECT_EQ(MsgBox("Disk full", vbExclamation, "Save"), 7);
    EXPECT_EQ(MsgBox("Plain"), 7);
    ASSERT_EQ(recorder.boxes.size(), 2u);
    EXPECT_EQ(recorder.boxes[0].text, "Disk full");
    EXPECT_EQ(recorder.boxes[0].style, 48);
    EXPECT_EQ(recorder.boxes[0].title, "Save");
    EXPECT_EQ(recorder.boxes[1].style, 0);
    EXPECT_EQ(recorder.boxes[1].title, "");

    // Replacing the recorder hands it back, and it still answers.
    MessageBoxHandler replaced = SetMessageBoxHandler([](auto&, int32_t, auto&) { return 3; });
    EXPECT_EQ(MsgBox("x"), 3);
    EXPECT_EQ(replaced("y", 0, ""), 7);
    SetMessageBoxHandler(replaced);
    EXPECT_EQ(recorder.boxes.size(), 3u);
  }
  EXPECT_EQ(MsgBox("to stderr"), vbOK);  // the default handler is back
}

TEST(HostServicesTest, DoEventsCallsTheYieldHandler) {
  int calls = 0;
  YieldHandler previous = SetYieldHandler([&] { ++calls; });
  DoEvents();
  DoEvents();
  EXPECT_EQ(calls, 2);
  YieldHandler mine = SetYieldHandler(previous);
  ASSERT_TRUE(mine);
  DoEvents();
  EXPECT_EQ(calls, 2);
  mine();
  EXPECT_EQ(calls, 3);
}

TEST(HostServicesTest, CreateObjectFindsRegisteredFactoriesWithoutCase) {
  EXPECT_EQ(ErrorNumberOf([] { CreateObject("KolvaneTest.Thing"); }), 429);
  auto thing = std::make_shared<Thing>();
  RegisterClass("KolvaneTest.Thing", [thing] { return thing; });
  EXPECT_EQ(CreateObject("kolvanetest.THING"), thing);
  EXPECT_EQ(CreateObject("KolvaneTest.Thing"), thing);

  RegisterClass("KOLVANETEST.thing", nullptr);
  EXPECT_EQ(ErrorNumberOf([] { CreateObject("KolvaneTest.Thing"); }), 429);

  RegisterClass("KolvaneTest.Nothing", [] { return std::shared_ptr<IUnknown>(); });
  EXPECT_EQ(ErrorNumberOf([] { CreateObject("KolvaneTest.Nothing"); }), 429);
  RegisterClass("KolvaneTest.Nothing", nullptr);
}

TEST(HostServicesTest, ComponentFolderCanBeOverriddenAndRestored) {
  const std::string library = ComponentFolder();
  ASSERT_FALSE(library.empty());
  EXPECT_TRUE(std::filesystem::is_directory(library)) << library;
  {
    test::ScopedComponentFolder override("/tmp/elsewhere");
    EXPECT_EQ(ComponentFolder(), "/tmp/elsewhere");
  }
  EXPECT_EQ(ComponentFolder(), library);
}

}  // namespace
}  // namespace kolvane
