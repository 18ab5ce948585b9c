#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "operations/client.h"
#include "operations/test_model.h"
#include "support/fake_services.h"

namespace vantora {
namespace {

using ::testing::EndsWith;
using testing::FakeServices;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using testing::TestModel;

class RefSheet : public ::testing::Test {
 protected:
  void Init() {
    ref_sheet = std::make_unique<testing::RefSheetClient>(fake.services, model.application());
  }
  const std::vector<ui::ShownMessageBox>& boxes() { return fake.user_interface.message_boxes(); }

  TestModel model{{"Cover", "Reference", "Other"}};
  FakeServices fake{{"OK"}};
  std::unique_ptr<testing::RefSheetClient> ref_sheet;
};

TEST_F(RefSheet, WritesTheVersionIntoC6OfTheSheetItIsBoundTo) {
  model.Put("Reference!A1", {"X14", "n", "k", "c", "s", "e", "m", "g", "h"});
  model.Put("Other!A1", {"not used: an x"});
  Init();
  EXPECT_THAT(boxes(), IsEmpty());
  model.RecordChanges();
  ref_sheet->PutDLLVersion("Vantora DLL version being used: 2.1");
  EXPECT_THAT(model.Changes(),
              ::testing::ElementsAre("Reference!C6:  -> Vantora DLL version being used: 2.1"));
}

TEST_F(RefSheet, PrefersTheActiveSheetAndStaysWithIt) {
  model.Put("Reference!A1", {"X", "n", "k", "c", "s"});
  model.Put("Other!A1", {"X", "n", "k", "c", "s"});
  model.Activate("Other");
  Init();
  model.Activate("Reference");
  ref_sheet->PutDLLVersion("line");
  EXPECT_EQ(model.Get("Other!C6"), Value("line"));
  EXPECT_EQ(model.Get("Reference!C6"), Value());
}

TEST_F(RefSheet, WithoutSheetIsReportedAndUnusable) {
  Init();
  ASSERT_THAT(boxes(), SizeIs(1));
  EXPECT_THAT(boxes()[0].text,
              EndsWith("Module: clsRefSheet\n\n"
                       "No sheet flagged as reference sheet, with X in cell A1\n\n"));
  model.RecordChanges();
  ref_sheet->PutDLLVersion("line");
  EXPECT_THAT(model.Changes(), IsEmpty());
}

TEST_F(RefSheet, BoundAgainWithoutSheetIsUnusable) {
  model.Put("Reference!A1", {"X", "n", "k", "c", "s"});
  Init();
  model.Put("Reference!A1", {""});
  ref_sheet->Init();
  ref_sheet->PutDLLVersion("line");
  EXPECT_EQ(model.Get("Reference!C6"), Value());
}

TEST(RefSheetFlags, ThatAreMissingAreReportedAndLeaveItUsable) {
  const std::string names_lines =
      "Names list flag ('n')\n"
      "Key discrepancy list flag ('s')\n"
      "Dynamic menu list flag ('m')\n"
      "Charts/graphs list flag ('g')\n"
      "Dashboard configurations list flag ('h')\n";
  struct Case {
    std::vector<Value> row1;
    std::string lines;  // "" when nothing is reported
  } const cases[] = {
      {{"X", "n", "k", "c", "s", "e", "m", "g", "h"}, ""},
      {{"X", "N", "K", "C", "S"}, ""},  // e, m, g and h alone are never missed
      {{"X", "k", "c", "s", "e", "m", "g", "h"}, names_lines},
      {{"X", "n"},
       "Keys list flag ('k')\nKeys list sheet column flag ('c')\nKeys list sheet name flag "
       "('s')\n"},
      // Whole texts only; an error value and a number are no flags.
      {{"X", "n", "k ", "c", "s", CellError::kValue, 5}, "Keys list flag ('k')\n"},
      {{"X"},
       "Names list flag ('n')\nKeys list flag ('k')\nKeys list sheet column flag ('c')\n"
       "Keys list sheet name flag ('s')\n" +
           names_lines.substr(names_lines.find('\n') + 1)},
  };
  for (const Case& c : cases) {
    TestModel model({"Reference"});
    model.Put("Reference!A1", c.row1);
    FakeServices fake({"OK"});
    testing::RefSheetClient ref_sheet(fake.services, model.application());
    ref_sheet.PutDLLVersion("line");
    EXPECT_EQ(model.Get("Reference!C6"), Value("line"));
    const auto& boxes = fake.user_interface.message_boxes();
    ASSERT_THAT(boxes, SizeIs(c.lines.empty() ? 0 : 1)) << c.lines;
    if (c.lines.empty()) continue;
    EXPECT_EQ(boxes[0].title, "Vantora Error Condition");
    EXPECT_EQ(boxes[0].style, kCritical);
    EXPECT_EQ(boxes[0].text,
              "One or more flag values are missing from row 1 of the Reference Sheet.\n"
              "This should be corrected before using this model\n" +
                  c.lines);
  }
}

}  // namespace
}  // namespace vantora
