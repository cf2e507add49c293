#include "interfaces/IScheduleEditor.h"

#include "CpTestSupport.h"

namespace kolvane {
namespace {

constexpr char kProgId[] = "Brask.Ondo.UI.SchedulerEditor.SchedulerFace";

// Acts as the user of the schedule editor: keeps what it is handed, answers `reply`.
class FakeScheduleEditor final : public IScheduleEditor {
 public:
  std::string xml() const override { return text; }
  void xml(const std::string& value) override {
    received = value;
    text = value;
  }
  void TypeDBPath(const std::string& value) override { path = value; }
  void ShowDialog() override {
    ++shown;
    text = reply;
  }
  std::string text, received, path, reply;
  int shown = 0;
};

class ScheduleEditorTest : public test::CpFixture {
 protected:
  void SetUp() override {
    plain = Add("<nciPlain><SNVTType>40050</SNVTType><Default>12</Default></nciPlain>");
    schedule = Add(
        "<nciSched><SNVTType>40070</SNVTType><start><Value>5</Value></start>"
        "<mode><Value>OC_BYPASS</Value></mode></nciSched>");
    other = Add("<nciOther><SNVTType>40071</SNVTType></nciOther>");
    ASSERT_TRUE(plain && schedule && other);
    boxes.boxes.clear();
  }

  std::shared_ptr<CConfigProperty> plain, schedule, other;
  test::PointerRecorder pointer;
  test::ScopedFormHost forms;
};

TEST_F(ScheduleEditorTest, WithoutEditorFallsBackToTheOrdinaryDialog) {
  test::ScopedComponent none(kProgId, nullptr);
  schedule->IConfigProperty_SetValue();
  EXPECT_EQ(pointer.pointers, (std::vector<int16_t>{11, 0}));
  ASSERT_EQ(boxes.boxes.size(), 1u);
  EXPECT_EQ(std::get<0>(boxes.boxes[0]), "Install SchedulerEditor.dll to edit Schedulers");
  EXPECT_EQ(std::get<1>(boxes.boxes[0]), 0);
  EXPECT_EQ(forms.host->captions, std::vector<std::string>{"Structure Value"});

  plain->IConfigProperty_SetValue();
  EXPECT_EQ(boxes.boxes.size(), 2u);
  EXPECT_EQ(forms.host->captions.back(), "Numeric Value");
  for (const char* id : {"40051", "40060", "40061"}) {
    properties.IConfigProperties_AddNewCP(std::string("nci") + id, id)->IConfigProperty_SetValue();
  }
  EXPECT_EQ(boxes.boxes.size(), 5u);
  EXPECT_EQ(forms.host->captions.size(), 5u);

  // 40071 is no schedule: straight to its dialog.
  pointer.pointers.clear();
  boxes.boxes.clear();
  other->IConfigProperty_SetValue();
  EXPECT_TRUE(pointer.pointers.empty());
  EXPECT_TRUE(boxes.boxes.empty());
  EXPECT_EQ(forms.host->captions.back(), "Structure Value");
}

TEST_F(ScheduleEditorTest, EditorRoundTripsPlainAndStructuredValues) {
  auto editor = std::make_shared<FakeScheduleEditor>();
  int created = 0;
  test::ScopedComponent registered(kProgId, [&]() -> std::shared_ptr<IUnknown> {
    ++created;
    return editor;
  });

  editor->reply = R"(<FIELD Name="nciPlain" Type="SNVT_40050" Value="34"/>)";
  plain->IConfigProperty_SetValue();
  EXPECT_EQ(editor->received, R"(<FIELD Name="nciPlain" Type="SNVT_40050" Value="12"/>)");
  EXPECT_EQ(editor->path, ComponentFolder() + "/../../SNVTS.XML");
  EXPECT_EQ(editor->shown, 1);
  EXPECT_EQ(plain->IConfigProperty_Value(), "34");

  editor = std::make_shared<FakeScheduleEditor>();
  editor->reply =
      R"(<FIELD Name="nciSched" Type="SNVT_40070"><FIELDS>)"
      R"(<FIELD Name="mode" Type="SNVT_occupancy" Value="OC_STANDBY"/>)"
      R"(<FIELD Name="start" Type="SNVT_count" Value="7"/></FIELDS></FIELD>)";
  schedule->IConfigProperty_SetValue();
  EXPECT_EQ(editor->received,
            R"(<FIELD Name="nciSched" Type="SNVT_40070"><FIELDS>)"
            R"(<FIELD Name="start" Type="SNVT_count" Value="5"/>)"
            R"(<FIELD Name="mode" Type="SNVT_occupancy" Value="OC_BYPASS"/></FIELDS></FIELD>)");
  EXPECT_EQ(editor->shown, 1);
  EXPECT_EQ(schedule->IConfigProperty_Value(), "{ 7  OC_STANDBY }");
  EXPECT_EQ(schedule->IConfigProperty_RawValue(), "000703");

  // A reply that is no XML changes nothing.
  editor = std::make_shared<FakeScheduleEditor>();
  editor->reply = "<FIELD Name=";
  schedule->IConfigProperty_SetValue();
  plain->IConfigProperty_SetValue();
  EXPECT_EQ(editor->shown, 2);
  EXPECT_EQ(schedule->IConfigProperty_Value(), "{ 7  OC_STANDBY }");
  EXPECT_EQ(plain->IConfigProperty_Value(), "34");

  other->IConfigProperty_SetValue();
  EXPECT_EQ(created, 4);
  EXPECT_TRUE(boxes.boxes.empty());
  EXPECT_EQ(forms.host->captions, std::vector<std::string>{"Structure Value"});
}

}  // namespace
}  // namespace kolvane
