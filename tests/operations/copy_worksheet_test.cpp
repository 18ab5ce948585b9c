// Copying worksheets into the same and into another workbook.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "operations/client.h"
#include "operations/test_model.h"
#include "support/fake_services.h"
#include "support/faulty_host.h"

namespace vantora {
namespace {

using testing::CopyWorksheetClient;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::TestModel;

using Names = std::vector<std::string>;

constexpr char kCopy[] = "frmCopyWorksheet:butCopy";
constexpr char kCopySelection[] = "frmCopyWorksheet:butSource1;butCopy";
constexpr char kCopyToOther[] = "frmCopyWorksheet:cboTargetWorkbook=Other.xlsx;butCopy";
constexpr char kDone[] = "frmCopyWorksheet:butCancel";
constexpr char kComplete[] = "Copy is complete.  Hit Cancel/Done button to move on.";

// Gives the answers, and writes down what the copy dialog shows each time.
class CopyReader : public ui::ScriptedUserInterface {
 public:
  explicit CopyReader(const std::vector<std::string>& answers)
      : ScriptedUserInterface(testing::Answers(answers)) {}

  void ShowModal(Form& form) override {
    shown.push_back(dynamic_cast<TextBox&>(*form.Find("txtResult")).text());
    copy_enabled.push_back(form.Find("butCopy")->enabled());
    sources = dynamic_cast<ChoiceList&>(*form.Find("cboSourceWorksheet")).items();
    targets = dynamic_cast<ChoiceList&>(*form.Find("cboTargetWorkbook")).items();
    source = dynamic_cast<ChoiceList&>(*form.Find("cboSourceWorksheet")).list_index();
    if (while_shown) while_shown();
    ScriptedUserInterface::ShowModal(form);
  }
  void ShowModeless(Form& form) override {
    ScriptedUserInterface::ShowModeless(form);
    const std::string fraction = form.Find("lblFront")->caption();
    progress.push_back(form.caption() + "|" + form.Find("lblMessage")->caption() + "|" + fraction);
    if (fraction == cancel_at) dynamic_cast<Button&>(*form.Find("butCancel")).Press();
  }

  // Reports are told apart from the dialog's showings, and need no answer.
  MessageBoxResult MessageBox(std::string_view text, int, std::string_view title) override {
    reports.push_back(std::string(title) + "|" + std::string(text));
    return MessageBoxResult::kOk;
  }

  Names reports;
  std::vector<std::string> shown;
  std::vector<bool> copy_enabled;
  Names sources;
  Names targets;
  int source = -1;
  Names progress;
  std::string cancel_at;
  std::function<void()> while_shown;
};

class CopyWorksheet : public ::testing::Test {
 protected:
  CopyWorksheet() : model({"Plan", "Budget", "Rates"}) {
    other = model.AddWorkbook("Other.xlsx", {"Start", "Budget"});
    model.Put("Plan!B2", {"Sales", 12.5, "=C2*2"});
    model.Put("Plan!B3", {"Costs", 4, "=C3+Budget!A1"});
    model.Put("Budget!A1", {7});
    model.Fill("Plan!C2");
  }

  CopyReader& Copy(const std::vector<std::string>& answers) {
    reader = std::make_unique<CopyReader>(answers);
    return Run();
  }
  CopyReader& Run() {
    services = std::make_unique<Services>(Services{*reader, clock, versions});
    CopyWorksheetClient client(*services, model.application());
    client.CopyWorksheet();
    EXPECT_TRUE(model.application()->ScreenUpdating());
    return *reader;
  }
  // The one report of an error that was shown.
  std::string Reported() {
    if (reader->reports.size() != 1) return std::to_string(reader->reports.size()) + " reports";
    EXPECT_THAT(reader->reports[0], HasSubstr("Vantora|A programming error has been encountered."));
    EXPECT_THAT(reader->reports[0], HasSubstr("Module: clsCopyWorksheet\n\n"));
    return reader->reports[0];
  }
  Names SheetNames(int workbook) {
    model.Use(workbook);
    return model.SheetNames();
  }

  TestModel model;
  int other = 0;
  std::unique_ptr<CopyReader> reader;
  testing::FixedClock clock;
  testing::NoFileVersions versions;
  std::unique_ptr<Services> services;
};

TEST_F(CopyWorksheet, CopiesTheUsedCellsToA1OfANewSheetBehindTheLast) {
  CopyReader& shown = Copy({kCopy, kDone});
  EXPECT_THAT(model.SheetNames(), ElementsAre("Plan", "Budget", "Rates", "Copy of Plan"));
  EXPECT_THAT(model.Get("'Copy of Plan'!A1", 2), ElementsAre(Value("Sales"), Value(12.5)));
  // Formulas are copied as they read, not shifted.
  EXPECT_EQ(model.Formula("'Copy of Plan'!C1"), "C2*2");
  EXPECT_EQ(model.Formula("'Copy of Plan'!C2"), "C3+Budget!A1");
  EXPECT_EQ(model.Get("'Copy of Plan'!C1"), Value(14));
  EXPECT_TRUE(model.IsFilled("'Copy of Plan'!B1"));
  EXPECT_FALSE(model.IsFilled("'Copy of Plan'!A1"));
  EXPECT_THAT(shown.shown,
              ElementsAre("Choose source and target, then hit copy button",
                          "There were explicit references to the following other worksheets: "
                          "Budget\n\n" +
                              std::string(kComplete)));
  EXPECT_THAT(shown.copy_enabled, ElementsAre(true, false));
}

TEST_F(CopyWorksheet, OffersWorksheetsAndWorkbooksWithTheActiveSheetChosen) {
  model.Activate("Budget");
  CopyReader& shown = Copy({kDone});
  EXPECT_THAT(shown.sources, ElementsAre("Plan", "Budget", "Rates"));
  EXPECT_THAT(shown.targets,
              ElementsAre(model.application()->ActiveWorkbook()->Name(), "Other.xlsx"));
  EXPECT_EQ(shown.source, 1);
}

TEST_F(CopyWorksheet, ChangesNothingWhenItIsCancelled) {
  model.RecordChanges();
  CopyReader& shown = Copy({kDone});
  EXPECT_THAT(model.Changes(), IsEmpty());
  EXPECT_EQ(model.SheetNames().size(), 3u);
  EXPECT_EQ(SheetNames(other).size(), 2u);
  // The outcome is not shown.
  EXPECT_EQ(shown.shown.size(), 1u);
}

TEST_F(CopyWorksheet, ReferencesInTheCopyMeanTheTargetsSheets) {
  model.Put("Plan!E2", {"=Rates!B1&\"!\""});
  CopyReader& shown = Copy({kCopyToOther, kDone});
  model.Use(other);
  EXPECT_THAT(model.SheetNames(), ElementsAre("Start", "Budget", "Copy of Plan", "Rates"));
  EXPECT_EQ(model.Formula("'Copy of Plan'!C2"), "C3+Budget!A1");
  // The target's own Budget is empty.
  EXPECT_EQ(model.Get("'Copy of Plan'!C2"), Value(0));
  EXPECT_TRUE(model.IsFilled("'Copy of Plan'!B1"));
  EXPECT_EQ(shown.shown[1],
            "There were explicit references to the following other worksheets: Rates, Budget\n\n"
            "Added dummy worksheet placeholder for Rates.\n\n" +
                std::string(kComplete));
  EXPECT_EQ(SheetNames(0).size(), 3u);
}

TEST_F(CopyWorksheet, TakesTheFirstFreeName) {
  Copy({kCopy, kDone});
  for (const char* expected : {"Copy of Plan_1", "Copy of Plan_2"}) {
    Copy({"frmCopyWorksheet:cboSourceWorksheet=Plan;butCopy", kDone});
    EXPECT_EQ(model.SheetNames().back(), expected);
  }
}

// The model compares names exactly, the host does not.
TEST_F(CopyWorksheet, AnotherSpellingOfTheNameIsRefusedByTheHost) {
  Copy({kCopyToOther, kDone});
  model.Use(other);
  model.Sheet("Copy of Plan")->SetName("COPY OF PLAN");
  model.ActivateWorkbook(0);
  Copy({kCopyToOther});
  EXPECT_THAT(Reported(), HasSubstr("error message #: 1004"));
}

struct SelectionCase {
  const char* selected;
  Names copied;  // of the copy's first column
};

TEST_F(CopyWorksheet, CopiesWhatSelectionAndUsedCellsHaveInCommon) {
  model.Put("Plan!B4", {"Rest"});
  const SelectionCase cases[] = {
      {"B3", {"Costs"}},
      {"A1:C3", {"Sales", "Costs"}},
      {"B3:Z900", {"Costs", "Rest"}},
      {"B1:B1048576", {"Sales", "Costs", "Rest"}},
      // Nothing in common: the rectangle between the corners, which is the host's reading of
      // bounds in the wrong order.
      {"B6:B7", {"Rest", "", ""}},
  };
  for (const SelectionCase& c : cases) {
    model.Activate("Plan");
    model.Select(c.selected);
    Copy({kCopySelection, kDone});
    const std::string name = model.SheetNames().back();
    Names copied;
    host::RangePtr used = model.Sheet(name)->UsedRange();
    for (std::size_t row = 1; row <= c.copied.size(); ++row) {
      copied.push_back(model.Sheet(name)->Cells(static_cast<int>(row), 1)->Formula());
    }
    EXPECT_EQ(copied, c.copied) << c.selected;
    EXPECT_LE(used->RowsCount(), static_cast<int>(c.copied.size())) << c.selected;
  }
}

// Only the place of the selection counts, whatever sheet it is on.
TEST_F(CopyWorksheet, TheSelectionNeedNotBeOnTheSource) {
  model.Activate("Rates");
  model.Select("C3:C9");
  Copy({"frmCopyWorksheet:cboSourceWorksheet=Plan;butSource1;butCopy", kDone});
  EXPECT_THAT(model.Get("'Copy of Plan'!A1", 2), ElementsAre(4, Value()));
}

TEST_F(CopyWorksheet, BringsRowsColumnsCommentsAndOutline) {
  host::WorksheetPtr plan = model.Sheet("Plan");
  plan->Cells(2, 2)->SetRowHeight(30);
  plan->Cells(3, 2)->SetOutlineLevel(3);
  plan->Cells(1, 4)->SetColumnWidth(21);
  plan->Cells(3, 3)->AddComment()->Text("checked");
  plan->OutlineShowLevels(1);
  ASSERT_TRUE(plan->Cells(3, 2)->RowsHidden());
  Copy({kCopyToOther, kDone});
  // The whole sheet is copied with its outline expanded.
  EXPECT_FALSE(plan->Cells(3, 2)->RowsHidden());
  model.Use(other);
  host::WorksheetPtr copy = model.Sheet("Copy of Plan");
  EXPECT_EQ(copy->Cells(1, 1)->RowHeight(), 30);
  EXPECT_EQ(copy->Cells(2, 1)->OutlineLevel(), 3);
  EXPECT_EQ(copy->Cells(1, 3)->ColumnWidth(), 21);
  EXPECT_EQ(model.Comment("'Copy of Plan'!B2"), "checked");
  EXPECT_EQ(model.Comment("'Copy of Plan'!C3"), "none");
}

TEST_F(CopyWorksheet, ASelectedAreaLeavesTheOutlineAsItIs) {
  host::WorksheetPtr plan = model.Sheet("Plan");
  plan->Cells(3, 2)->SetOutlineLevel(2);
  plan->OutlineShowLevels(1);
  model.Select("B2:D3");
  Copy({kCopySelection, kDone});
  EXPECT_TRUE(plan->Cells(3, 2)->RowsHidden());
  EXPECT_EQ(model.Sheet("Copy of Plan")->Cells(2, 1)->RowHeight(), 0);
}

TEST_F(CopyWorksheet, TakesThePaletteOfTheActiveWorkbookWhenAsked) {
  host::Palette colors = model.application()->ActiveWorkbook()->Colors();
  colors[11] = 0x123456;
  model.application()->ActiveWorkbook()->SetColors(colors);
  const auto other_colors = [&] { return model.application()->Workbooks().at(1)->Colors(); };
  Copy({kCopyToOther, kDone});
  EXPECT_NE(other_colors(), colors);
  model.ActivateWorkbook(0);
  Copy({"frmCopyWorksheet:cboTargetWorkbook=Other.xlsx;chkCopyColors=yes;butCopy", kDone});
  EXPECT_EQ(other_colors(), colors);
}

TEST_F(CopyWorksheet, ShowsItsProgressRowByRow) {
  CopyReader& shown = Copy({kCopy, kDone});
  constexpr char kStart[] = "Worksheet Copy|copying individual cells, please be patient|";
  EXPECT_THAT(shown.progress, ElementsAre(kStart + std::string("54%"), kStart + std::string("0%"),
                                          kStart + std::string("100%")));
}

TEST_F(CopyWorksheet, CancelledInTheMiddleTheRowsCopiedSoFarStay) {
  for (int row = 4; row <= 12; ++row) model.Put("Plan!B" + std::to_string(row), {"=Rates!A1"});
  model.Sheet("Plan")->Cells(12, 2)->SetRowHeight(40);
  reader = std::make_unique<CopyReader>(std::vector<std::string>{kCopyToOther, kDone});
  // Rows 2 to 12 are eleven: the third one stands at 20%.
  reader->cancel_at = "20%";
  CopyReader& shown = Run();
  EXPECT_EQ(shown.shown.back(), "Operation cancelled, worksheet partially copied");
  model.Use(other);
  EXPECT_THAT(model.SheetNames(), ElementsAre("Start", "Budget", "Copy of Plan", "Rates"));
  // The button is looked at after the next whole row.
  EXPECT_EQ(model.Formula("'Copy of Plan'!A4"), "Rates!A1");
  EXPECT_EQ(model.Formula("'Copy of Plan'!A5"), "");
  EXPECT_EQ(model.Sheet("Copy of Plan")->Cells(11, 1)->RowHeight(), 40);
}

TEST_F(CopyWorksheet, ReportsNamesThatNoSheetCanHave) {
  model.Put("Plan!E2", {"1+Budget!A1+'My Rates'!A1"});
  Copy({kCopy});
  EXPECT_THAT(Reported(), HasSubstr("'My Rates'"));
  EXPECT_THAT(Reported(), HasSubstr("error message #: 1004"));
  // What was added by then stays.
  EXPECT_EQ(model.SheetNames()[3], "Copy of Plan");
  EXPECT_EQ(model.Get("'Copy of Plan'!A1"), Value());
}

TEST_F(CopyWorksheet, ReportsMoreThanFiftyReferencedSheets) {
  for (int i = 1; i <= 51; ++i) {
    model.Sheet("Plan")->Cells(i, 6)->SetFormula("text Sheet" + std::to_string(i) + "!");
  }
  Copy({kCopy});
  EXPECT_THAT(Reported(), HasSubstr("error message #: 9\n"));
}

TEST_F(CopyWorksheet, ReportsSheetsThatReachBelowTheLastRowOfTheModel) {
  model.Put("Plan!B32767", {"last"});
  model.Select("A1:B1");
  Copy({kCopySelection, kDone});
  EXPECT_THAT(reader->reports, IsEmpty());
  model.Activate("Plan");
  model.Put("Plan!B32768", {"too far"});
  Copy({kCopy});
  EXPECT_THAT(Reported(), HasSubstr("error message #: 6\n"));
  EXPECT_EQ(model.SheetNames().size(), 4u);
}

TEST_F(CopyWorksheet, ReportsANameTooLongForASheet) {
  model.AddWorkbook("Long.xlsx", {"x"});
  Copy({kCopy, kDone});
  model.Sheet("Copy of Plan")->SetName("A name of twenty-four ch");
  model.Activate("A name of twenty-four ch");
  Copy({kCopy});
  EXPECT_THAT(Reported(), HasSubstr("Copy of A name of twenty-four ch"));
}

// Whatever call the host refuses: one report, nothing thrown, screen updating on again.
TEST_F(CopyWorksheet, ReportsWhateverTheHostRefuses) {
  using testing::FaultPlan;
  auto plan = std::make_shared<FaultPlan>();
  const auto run = [&](int failing_call) {
    TestModel fresh({"Plan", "Gone"});
    fresh.Put("Plan!A1", {1, "=A1+Rates"});
    fresh.Put("Plan!A2", {"=\"x\"&Gone!A1"});
    fresh.AddWorkbook("Other.xlsx", {"Start"});
    reader = std::make_unique<CopyReader>(std::vector<std::string>{
        "frmCopyWorksheet:cboTargetWorkbook=Other.xlsx;chkCopyColors=1;butCopy", kDone});
    auto application = std::make_shared<testing::FaultyApplication>(fresh.application(), plan);
    Services faulty{*reader, clock, versions};
    CopyWorksheetClient client(faulty, application);
    plan->calls = 0;
    plan->failing_call = failing_call;
    client.CopyWorksheet();
    return fresh.application()->ScreenUpdating();
  };
  EXPECT_TRUE(run(0));
  EXPECT_THAT(reader->reports, IsEmpty());
  const int calls = plan->calls;
  ASSERT_GE(calls, 60);
  for (int failing = 1; failing <= calls; ++failing) {
    SCOPED_TRACE("call " + std::to_string(failing) + " of " + std::to_string(calls));
    // The first call switches screen updating off.
    EXPECT_TRUE(run(failing));
    EXPECT_THAT(Reported(), HasSubstr(FaultPlan::kText));
  }
}

}  // namespace
}  // namespace vantora
