#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "operations/client.h"
#include "operations/test_model.h"
#include "support/fake_services.h"

namespace vantora {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using testing::FakeServices;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;
using testing::TestModel;

class Formatting : public ::testing::Test {
 protected:
  const std::vector<ui::ShownMessageBox>& Boxes() { return fake.user_interface.message_boxes(); }

  TestModel model{{"Plan"}};
  FakeServices fake{{"OK", "OK", "OK", "OK"}};
  testing::FormattingClient formatting{fake.services, model.application()};
};

TEST_F(Formatting, StepsThroughTheColumnBlocksAndKeepsTheView) {
  const struct {
    const char* from;
    bool forward;
    int index;
    const char* to;
  } cases[] = {
      {"J5:Y9", true, 0, "J5:N9"},  {"J5:N9", true, 0, "O5:O9"},
      {"O5:O9", true, 0, "P5:Y9"},  {"P5:Y9", true, 0, "J5:O9"},
      {"J5:O9", true, 0, "J5:Y9"},  {"J5:Y9", false, 0, "J5:O9"},
      {"O5:O9", false, 0, "J5:N9"}, {"C5", true, 0, "J5:Y5"},
      {"C5", false, 0, "P5:Y5"},    {"J5:Y6,J10:Y12", true, 0, "J5:N6 J10:N12"},
      {"A1:B2", true, 3, "O1:O2"},  {"A1:B2", false, 5, "J1:O2"},
      {"J5:Y9", false, 9, "J5:O9"}, {"J5:Y9", true, -1, "J5:N9"},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.from);
    model.Select(one.from);
    model.application()->ActiveWindow()->SetScrollColumn(7);
    formatting.RangeSelect(one.forward, one.index);
    EXPECT_EQ(model.Selected(), one.to);
    EXPECT_EQ(model.application()->ActiveWindow()->ScrollColumn(), 7);
  }
}

TEST_F(Formatting, PastesFormulasIntoEachAreaAndSelectsAllAgain) {
  model.Put("Plan!J2", {"=A2*2"});
  model.Select("J2");
  model.application()->Selection()->Copy();
  model.Select("J5:K5,J7,M9:M10");
  formatting.PasteFormula();
  EXPECT_THAT(Boxes(), IsEmpty());
  EXPECT_EQ(model.Formula("Plan!K5"), "B5*2");
  EXPECT_EQ(model.Formula("Plan!J7"), "A7*2");
  EXPECT_EQ(model.Formula("Plan!M10"), "D10*2");
  EXPECT_EQ(model.Selected(), "J5:K5 J7 M9:M10");
  EXPECT_TRUE(model.application()->ScreenUpdating());
}

TEST_F(Formatting, APasteWithoutACopyIsToldForEachArea) {
  model.Select("J5");
  formatting.PasteFormula();
  ASSERT_THAT(Boxes(), SizeIs(1));
  EXPECT_EQ(Boxes()[0].title, "Vantora Paste");
  EXPECT_EQ(Boxes()[0].text, "You need to do a COPY before you can PASTE.");
  EXPECT_EQ(Boxes()[0].style, kExclamation);
  model.Select("J5,J7,J9");
  formatting.PasteFormula();
  EXPECT_THAT(Boxes(), SizeIs(4));
  EXPECT_EQ(model.Selected(), "J5 J7 J9");
  EXPECT_TRUE(model.application()->ScreenUpdating());
}

TEST_F(Formatting, FormatsEachChosenAreaAsHeadingsOrFigures) {
  model.Fill("Plan!B3");
  model.user().answers = {"B2:C3,E5", "nothing", "B3:C3"};
  formatting.LeftFormat();
  EXPECT_THAT(model.user().asked,
              ElementsAre("Vantora|Select the range to be formatted. A multiple selection is "
                          "allowed."));
  EXPECT_EQ(model.Sheet("Plan")->Cells(5, 5)->Interior()->ColorIndex(), 15);
  EXPECT_THAT(model.FormatOf("Plan!C3"), HasSubstr("horizontal=\"left\""));
  EXPECT_THAT(model.BorderOf("Plan!C3"),
              AllOf(HasSubstr("<right style=\"thin\">"), HasSubstr("<bottom style=\"thin\">"),
                    HasSubstr("indexed=\"63\""), Not(HasSubstr("<top style"))));

  formatting.RightFormat();  // the first answer is no reference
  EXPECT_THAT(model.user().asked, SizeIs(3));
  EXPECT_THAT(model.user().asked.back(), HasSubstr("\"nothing\" is no reference"));
  EXPECT_EQ(model.Sheet("Plan")->Cells(3, 2)->Interior()->ColorIndex(), host::kColorIndexNone);
  EXPECT_THAT(model.FormatOf("Plan!B3"), HasSubstr("horizontal=\"right\""));
  EXPECT_THAT(model.BorderOf("Plan!B3"),
              AllOf(HasSubstr("<right style=\"hair\">"), HasSubstr("<left style=\"thin\">")));
  EXPECT_THAT(Boxes(), IsEmpty());
}

TEST_F(Formatting, RefusesWholeRowsAndColumnsAndEndsQuietlyOnCancel) {
  model.user().answers = {"B2,4:5", "C:D"};
  formatting.LeftFormat();
  formatting.RightFormat();
  formatting.LeftFormat();
  ASSERT_THAT(Boxes(), SizeIs(2));
  EXPECT_EQ(Boxes()[0].text, "You must select a cell range, not whole rows.");
  EXPECT_EQ(Boxes()[1].text, "You must select a cell range, not whole columns.");
  EXPECT_EQ(Boxes()[1].style, kExclamation);
  EXPECT_EQ(Boxes()[1].title, "Vantora");
  EXPECT_EQ(model.Sheet("Plan")->Cells(2, 2)->Interior()->ColorIndex(), host::kColorIndexNone);
}

}  // namespace
}  // namespace vantora
