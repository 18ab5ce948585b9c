// Saving a year as a snapshot at the marker column.
#include <gmock/gmock.h>

#include "operations/year_end_fixture.h"

namespace vantora {
namespace {

using ::testing::ElementsAre;
using testing::FakeServices;
using ::testing::IsEmpty;
using testing::YearEndTest;

const std::string kNoComment = "frmSaveComments:butNoText";

class SaveYear : public YearEndTest {};

TEST_F(SaveYear, InsertsValuesAndFormatsOnEachHistorySheet) {
  model.Put("Cover!C1", {"=Data!R4"});
  YearEnd({"OK", kNoComment}).SaveCurrentYear();
  EXPECT_EQ(Confirmed(),
            "This will save the Current Year at the marker column to the right, and move the "
            "marker.");
  EXPECT_THAT(model.Changes(), ElementsAre("Data!R inserted", "Plant!T inserted", "Data!R3:  -> 30",
                                           "Data!R4:  -> f", "Plant!T5:  -> 26"));
  EXPECT_EQ(model.Formula("Data!R3"), "");
  EXPECT_TRUE(model.IsFilled("Data!R4"));
  EXPECT_EQ(model.Get("Data!S4"), Value("old"));
  EXPECT_FALSE(model.IsFilled("Data!S4"));
  EXPECT_EQ(model.Formula("Cover!C1"), "Data!S4");
}

TEST_F(SaveYear, MovesTheMarkersOnSoThatTheNextSnapshotStandsRightOfIt) {
  testing::YearEndClient& object = YearEnd({"OK", kNoComment, "OK", kNoComment});
  object.SaveLastYear();
  EXPECT_EQ(Confirmed(),
            "This will save the Last Year at the marker column to the right, and move the marker.");
  object.SaveCurrentYear();
  EXPECT_THAT(model.Get("Data!R3", 2), ElementsAre(Value(15), Value(30)));
  EXPECT_EQ(model.RefersTo("marker"), "Data!$T$1");
  EXPECT_THAT(model.Get("Plant!T5", 2), ElementsAre(Value(25), Value(26)));
  // The rightmost flag is the marker; the other one stays where it was.
  EXPECT_THAT(model.Get("Plant!Q1", 6),
              ElementsAre(Value("k"), Value(), Value(), Value(), Value(), Value("K")));
}

TEST_F(SaveYear, SheetsWithoutFlagUseTheMarkersColumnWhereverItIs) {
  model.Put("Plant!Q1", {Value(), Value(), Value(), "kk"});
  model.Put("Plant!A5", {"k"});  // not in row 1
  YearEnd({"OK", kNoComment}).SaveCurrentYear();
  EXPECT_EQ(model.Get("Plant!R5"), Value(26));
  EXPECT_EQ(model.Get("Plant!U1"), Value("kk"));
}

TEST_F(SaveYear, PutsAHiddenCommentOnRow2OfEachSavedColumn) {
  testing::YearEndClient& saver =
      YearEnd({"OK", "frmSaveComments:butText", "OK",
               "frmSaveComments:txtComments=Board\\; v2 <final>;butText"});
  saver.SaveCurrentYear();
  EXPECT_EQ(model.Comment("Data!R2"), " -- 11/21/2026 2:31:05 PM");
  EXPECT_EQ(model.Comment("Plant!T2"), " -- 11/21/2026 2:31:05 PM");
  EXPECT_TRUE(model.CommentsAreHidden("Data"));
  saver.SaveCurrentYear();
  EXPECT_EQ(model.Comment("Data!S2"), "Board; v2 <final>");
  EXPECT_EQ(model.Comment("Cover!R2"), "none");
}

TEST_F(SaveYear, WithoutTextAddsNoComment) {
  YearEnd({"OK", kNoComment, "OK", "frmSaveComments:txtComments=;butText"}).SaveCurrentYear();
  year_end->SaveCurrentYear();
  EXPECT_EQ(model.Comment("Data!R2"), "none");
  EXPECT_EQ(model.Comment("Data!S2"), "none");
}

TEST_F(SaveYear, ReturnsToTheSheetTheUserWasOn) {
  model.Activate("Planning");
  YearEnd({"OK", kNoComment}).SaveCurrentYear();
  EXPECT_EQ(model.ActiveSheet(), "Planning");
  EXPECT_TRUE(ScreenUpdating());
}

TEST_F(SaveYear, CancelledInTheConfirmationTouchesNothing) {
  YearEnd({"Cancel"}).SaveCurrentYear();
  EXPECT_THAT(model.Changes(), IsEmpty());
  EXPECT_TRUE(ScreenUpdating());
}

TEST_F(SaveYear, CancelledInTheCommentDialogLeavesScreenUpdatingOff) {
  for (const char* answer : {"frmSaveComments:butCancel", "frmSaveComments:close"}) {
    model.application()->SetScreenUpdating(true);
    YearEnd({"OK", answer}).SaveCurrentYear();
    EXPECT_THAT(model.Changes(), IsEmpty()) << answer;
    EXPECT_FALSE(ScreenUpdating()) << answer;
    EXPECT_EQ(model.ActiveSheet(), "Cover") << answer;
  }
}

TEST_F(SaveYear, EndsWithTheHostsErrorAndKeepsWhatIsDone) {
  model.Protect("Plant");
  EXPECT_THROW(YearEnd({"OK", kNoComment}).SaveCurrentYear(), HostError);
  EXPECT_THAT(model.Changes(), ElementsAre("Data!R inserted", "Data!R3:  -> 30", "Data!R4:  -> f"));
  EXPECT_FALSE(ScreenUpdating());
}

TEST_F(SaveYear, NeedsTheNameMarkerAndVisibleSheets) {
  model.Hide("Data");
  EXPECT_THROW(YearEnd({"OK", kNoComment}).SaveCurrentYear(), HostError);
  testing::TestModel nameless({"Data"});
  nameless.Put("Data!A1", {"S"});
  FakeServices services({"OK", kNoComment});
  testing::YearEndClient object(services.services, nameless.application());
  nameless.RecordChanges();
  EXPECT_THROW(object.SaveCurrentYear(), HostError);
  EXPECT_THAT(nameless.Changes(), IsEmpty());
}

// Looks at the list of years when it is shown.
class PromptReader : public ui::ScriptedUserInterface {
 public:
  using ScriptedUserInterface::ScriptedUserInterface;
  void ShowModal(Form& form) override {
    if (auto* list = dynamic_cast<ChoiceList*>(form.Find("cboYear"))) entries = list->items();
    ScriptedUserInterface::ShowModal(form);
  }
  std::vector<std::string> entries;
};

TEST_F(SaveYear, HistoryYearsAreListedWithLabelAndColumn) {
  testing::FixedClock clock;
  testing::NoFileVersions versions;
  PromptReader reader(testing::Answers({"frmSaveHistoryPrompt:butCancel"}));
  Services services{reader, clock, versions};
  testing::YearEndClient object(services, model.application());
  object.SaveHistoryYear();
  EXPECT_THAT(reader.entries,
              ElementsAre("2021 (column J)", "2022 (column K)", "FY 2023 (column L)",
                          "2024 (column M)", "2025 (column N)"));
}

TEST_F(SaveYear, HistoryYearIsTheChosenOneOrTheFirst) {
  YearEnd({"frmSaveHistoryPrompt:cboYear=3;butGO", "OK", kNoComment}).SaveHistoryYear();
  EXPECT_EQ(Confirmed(),
            "This will save the FY 2023 (column L) at the marker column to the right, and move the "
            "marker.");
  EXPECT_EQ(model.Get("Plant!T5"), Value(23));
  YearEnd({"frmSaveHistoryPrompt:butGO", "OK", kNoComment}).SaveHistoryYear();
  EXPECT_EQ(model.Get("Plant!U5"), Value(21));
  EXPECT_EQ(model.Get("Data!S3"), Value(11));
}

TEST_F(SaveYear, HistoryYearCancelledOrWithoutLabelsDoesNothing) {
  for (const char* answer :
       {"frmSaveHistoryPrompt:cboYear=2;butCancel", "frmSaveHistoryPrompt:close"}) {
    YearEnd({answer}).SaveHistoryYear();
    EXPECT_THAT(model.Changes(), IsEmpty()) << answer;
    EXPECT_TRUE(ScreenUpdating());
  }
  testing::TestModel nameless({"Data"});
  FakeServices services;
  testing::YearEndClient object(services.services, nameless.application());
  EXPECT_THROW(object.SaveHistoryYear(), HostError);
}

}  // namespace
}  // namespace vantora
