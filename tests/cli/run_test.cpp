#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <csignal>
#include <fstream>

#include "cli/small_model.h"
#include "support/faulty_host.h"

namespace vantora::cli {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;
using vantora::testing::BytesOf;
using vantora::testing::CellOf;
using vantora::testing::CommandResult;
using vantora::testing::SmallModel;

using Arguments = std::vector<std::string>;

// How a run that writes nothing ends.
struct Ending {
  std::string name;
  Arguments arguments;
  int exit_code;
  std::string err;
};

void PrintTo(const Ending& ending, std::ostream* out) { *out << ending.name; }

class RunThatWritesNothing : public ::testing::TestWithParam<Ending> {};

TEST_P(RunThatWritesNothing, ExitsWithItsCodeAndLeavesTheFiles) {
  SmallModel model;
  Arguments arguments = GetParam().arguments;
  arguments.push_back("--in-place");
  const CommandResult result = model.Run(arguments);
  EXPECT_EQ(result.exit_code, GetParam().exit_code);
  EXPECT_THAT(result.err, HasSubstr(GetParam().err));
  EXPECT_EQ(result.out, "");
  EXPECT_TRUE(model.Untouched()) << model.Files();
}

INSTANTIATE_TEST_SUITE_P(
    Endings, RunThatWritesNothing,
    ::testing::Values(
        Ending{"UnknownClass", {"clsYear.ShiftHistory"}, 2, "There is no class \"clsYear\""},
        Ending{"UnknownMethod", {"clsYearEnd.Shift"}, 2, "clsYearEnd has no method \"Shift\""},
        Ending{
            "TooManyArguments", {"clsYearEnd.ShiftHistory", "1"}, 2, "takes no arguments; 1 given"},
        Ending{"TooFewArguments", {"clsRefSheet.PutDLLVersion"}, 2, "the arguments versionText; 0"},
        Ending{"MalformedAnswer",
               {"clsYearEnd.ShiftHistory", "--answer", "Perhaps"},
               2,
               "\"Perhaps\" is no button"},
        Ending{"UnknownSheet", {"clsGlobals.Version", "--sheet", "Nowhere"}, 2, "\"Nowhere\""},
        Ending{"SetOnAnUnknownSheet",
               {"clsGlobals.Version", "--set", "'No''where'!A1=1"},
               2,
               "no worksheet \"No''where\""},
        Ending{"SelectOnAnotherSheet",
               {"clsGlobals.Version", "--sheet", "Planning", "--select", "'Data 01'!A1"},
               2,
               "add --sheet \"Data 01\""},
        Ending{"SetThatTheHostRefuses",
               {"clsGlobals.Version", "--set", "A1==SUM("},
               1,
               "vantora: --set \"A1==SUM(\": "},
        Ending{"SetWithoutACell", {"clsGlobals.Version", "--set", "1+1=2"}, 2, "\"1+1\""},
        Ending{
            "UnknownCaller", {"clsGlobals.Version", "--caller", "Spinner 9"}, 2, "\"Spinner 9\""},
        Ending{"SelectNothing", {"clsGlobals.Version", "--select", "A0"}, 2, "\"A0\""},
        Ending{"MessageBoxCancelled",
               {"clsYearEnd.ShiftHistory", "--answer", "Cancel"},
               3,
               "(answered: Cancel)\nvantora: cancelled; nothing was written."},
        Ending{"DialogCancelled",
               {"clsYearEnd.SaveCurrentYear", "--answer", "OK", "--answer",
                "frmSaveComments:butCancel"},
               3,
               "cancelled"},
        Ending{"DialogClosed",
               {"clsYearEnd.SaveHistoryYear", "--answer", "frmSaveHistoryPrompt:close"},
               3,
               "cancelled"},
        Ending{"AnswerMissing",
               {"clsYearEnd.SaveCurrentYear", "--answer", "OK"},
               4,
               "frmSaveComments \"Vantora Save-a-Year Comment Text\""},
        Ending{"AnswerOfAnotherKind",
               {"clsYearEnd.SaveCurrentYear", "--answer", "Yes"},
               4,
               "\"Yes\" does not fit the message box \"Vantora\""},
        Ending{"AnswerWithoutSuchAControl",
               {"clsYearEnd.SaveHistoryYear", "--answer", "frmSaveHistoryPrompt:cboMonth=2;butGO"},
               4,
               "cboMonth"},
        Ending{"CriticalMessageBox",
               {"clsRefSheet.PutDLLVersion", "1.0"},
               1,
               "contact Vantora support"}),
    [](const auto& info) { return info.param.name; });

TEST(Run, FailingHostCallIsReportedWithTextAndNumber) {
  SmallModel model;
  const CommandResult result = model.Run({"clsYearEnd.ShiftHistory", "--dry-run", "--answer", "OK",
                                          "--set", "'Data 01'!A1=S", "--sheet", "Planning"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_TRUE(model.Untouched());
  model.wrap_application = [](host::ApplicationPtr application) -> host::ApplicationPtr {
    auto plan = std::make_shared<vantora::testing::FaultPlan>();
    plan->failing_call = 3;
    return std::make_shared<vantora::testing::FaultyApplication>(application, plan);
  };
  const CommandResult failed =
      model.Run({"clsYearEnd.ShiftHistory", "--in-place", "--answer", "OK"});
  EXPECT_EQ(failed.exit_code, 1);
  EXPECT_THAT(failed.err, HasSubstr("vantora: injected (error 1004)\n"
                                    "Nothing was written.\n"));
  EXPECT_TRUE(model.Untouched());
}

TEST(Run, ArraysThatTheMethodFilledAreItsResult) {
  SmallModel model;
  std::vector<std::string> arguments = {"clsRefSheet.ConfigsListGet",
                                        R"(["old","",""])",
                                        "--dry-run",
                                        "--set",
                                        "'Data 01'!A1=X14",
                                        "--set",
                                        "'Data 01'!B1=n",
                                        "--set",
                                        "'Data 01'!C1=k",
                                        "--set",
                                        "'Data 01'!D1=c",
                                        "--set",
                                        "'Data 01'!E1=s",
                                        "--set",
                                        "'Data 01'!F1=h",
                                        "--set",
                                        "'Data 01'!F14=2",
                                        "--set",
                                        "'Data 01'!G14=Board"};
  const CommandResult words = model.Run(arguments);
  EXPECT_EQ(words.exit_code, 0) << words.err;
  EXPECT_EQ(words.out, "configs: [\"\",\"Board\",\"\"]\n");

  arguments.push_back("--json");
  const auto json = nlohmann::json::parse(model.Run(arguments).out);
  EXPECT_EQ(json["arrays"], nlohmann::json::parse(R"({"configs": ["", "Board", ""]})"));

  // An array that a method only reads is no result.
  arguments = {"clsRefSheet.ConfigsListPut",
               R"(["Board"])",
               "--dry-run",
               "--set",
               "'Data 01'!A1=X",
               "--answer",
               "OK"};
  EXPECT_EQ(model.Run(arguments).out, "");
}

TEST(Run, FileThatCannotBeReadOrWrittenIsAnError) {
  SmallModel model;
  std::ofstream(model.path("text.xlsm")) << "no workbook";
  for (const char* name : {"text.xlsm", "missing.xlsm"}) {
    const CommandResult result =
        model.Command({"run", model.path(name).string(), "clsGlobals.Version", "--in-place"});
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_THAT(result.err, HasSubstr(name));
  }
  // Before anything is asked.
  const CommandResult unwritable = model.Run(
      {"clsYearEnd.ShiftHistory", "--output", (model.path("missing") / "out.xlsm").string()});
  EXPECT_EQ(unwritable.exit_code, 1);
  EXPECT_THAT(unwritable.err, HasSubstr("out.xlsm\" can't be written: there is no folder \""));
  EXPECT_EQ(BytesOf(model.path("text.xlsm")), "no workbook");
  EXPECT_EQ(model.Files(), "model.xlsm text.xlsm ");
}

TEST(Run, OutputMayNeitherBeTheModelNorHaveAnotherEnding) {
  SmallModel model;
  const std::string same = (model.path().parent_path() / "." / "model.xlsm").string();
  for (const std::string& output : {same, model.path("out.xlsx").string()}) {
    const CommandResult result = model.Run({"clsGlobals.Version", "--output", output});
    EXPECT_EQ(result.exit_code, 2) << result.err;
    EXPECT_TRUE(model.Untouched());
  }
}

TEST(Run, OutputHoldsTheResultAndTheModelStays) {
  SmallModel model;
  const CommandResult result = model.Run(
      {"CLSYEAREND.shifthistory", "--output", model.path("out.xlsm").string(), "--answer", "OK"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_THAT(result.err,
              AllOf(HasSubstr("[Vantora] Warning\nThis will shift all five history years.\n"),
                    HasSubstr("(answered: OK)"), HasSubstr("Written: "), Not(HasSubstr("%"))));
  EXPECT_EQ(BytesOf(model.path()), model.bytes());
  EXPECT_EQ(CellOf(model.path("out.xlsm"), "'Data 01'!J3"), Value(2));
  EXPECT_EQ(CellOf(model.path("out.xlsm"), "'Data 01'!M4"), Value("e"));
}

TEST(Run, InPlaceKeepsTheFileBefore) {
  SmallModel model;
  const Arguments shift = {"clsYearEnd.ShiftHistory", "--in-place", "--yes"};
  EXPECT_EQ(model.Run(shift).exit_code, 0);
  EXPECT_EQ(BytesOf(model.path("model.xlsm.bak")), model.bytes());
  EXPECT_EQ(CellOf(model.path(), "'Data 01'!J3"), Value(2));
  const std::string shifted_once = BytesOf(model.path());
  EXPECT_EQ(model.Run(shift).exit_code, 0);
  EXPECT_EQ(BytesOf(model.path("model.xlsm.bak")), shifted_once);
  EXPECT_EQ(CellOf(model.path(), "'Data 01'!J3"), Value(3));
  // The user takes the file before back by its name alone.
  std::filesystem::remove(model.path());
  std::filesystem::create_hard_link(model.path("model.xlsm.bak"), model.path());
  EXPECT_EQ(model.Run(shift).exit_code, 0);
  EXPECT_EQ(BytesOf(model.path("model.xlsm.bak")), shifted_once);
  EXPECT_EQ(model.Files(), "model.xlsm model.xlsm.bak ");
}

TEST(Run, InPlaceWritesNothingWhenTheFileBeforeCannotBeKept) {
  SmallModel model;
  std::filesystem::create_directory(model.path("model.xlsm.bak"));
  const CommandResult result = model.Run({"clsYearEnd.ShiftHistory", "--in-place", "--yes"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_THAT(result.err,
              HasSubstr("model.xlsm.bak: a folder has that name.\nNothing was written."));
  EXPECT_EQ(BytesOf(model.path()), model.bytes());
  EXPECT_EQ(model.Files(), "model.xlsm model.xlsm.bak ");
}

TEST(Run, InPlaceWritesTheFileBehindALink) {
  SmallModel model;
  std::filesystem::create_symlink("model.xlsm", model.path("link.xlsm"));
  const CommandResult result = model.Command(
      {"run", model.path("link.xlsm").string(), "clsYearEnd.ShiftHistory", "--in-place", "--yes"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_TRUE(std::filesystem::is_symlink(model.path("link.xlsm")));
  EXPECT_EQ(CellOf(model.path(), "'Data 01'!J3"), Value(2));
  EXPECT_EQ(BytesOf(model.path("model.xlsm.bak")), model.bytes());
}

TEST(Run, AnswersAreTakenInOrder) {
  SmallModel model;
  const CommandResult result =
      model.Run({"clsYearEnd.SaveHistoryYear", "--in-place", "--answer",
                 "frmSaveHistoryPrompt:cboYear=2;butGO", "--answer", "OK", "--answer",
                 "frmSaveComments:txtComments=before the audit;butText"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_THAT(result.err, HasSubstr("This will save the 2022 (column K) at the marker column"));
  EXPECT_EQ(CellOf(model.path(), "'Data 01'!AA3"), Value(2));
  EXPECT_EQ(CellOf(model.path(), "'Data 01'!AA4"), Value("b"));
  EXPECT_EQ(CellOf(model.path(), "'Data 01'!AB1"), Value("k"));
}

TEST(Run, AnswerThatNothingAskedForIsToldAndTheResultWritten) {
  SmallModel model;
  const CommandResult result = model.Run({"clsYearEnd.ShiftHistory", "--in-place", "--answer", "OK",
                                          "--answer", "frmSaveComments:butText"});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_THAT(result.err, HasSubstr("nothing asked for the answer \"frmSaveComments:butText\""));
  EXPECT_EQ(CellOf(model.path(), "'Data 01'!J3"), Value(2));
}

TEST(Run, QuestionsWithoutAnAnswerGoToTheTerminal) {
  SmallModel model;
  model.interactive = true;
  model.typed = "typed remark\n\n1\n";
  const CommandResult result =
      model.Run({"clsYearEnd.SaveCurrentYear", "--in-place", "--answer", "OK", "--changes"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_THAT(result.err, HasSubstr("Vantora Save-a-Year Comment Text\n"));
  EXPECT_EQ(CellOf(model.path(), "'Data 01'!AA3"), Value(6));
  EXPECT_THAT(result.out, HasSubstr("Other changes\n"));
  model.typed = "";  // the user types Ctrl-D at the first question
  EXPECT_EQ(model.Run({"clsYearEnd.SaveCurrentYear", "--dry-run"}).exit_code, 3);
}

TEST(Run, CtrlCAtTheProgressCancels) {
  // Presses Ctrl-C when the operation first asks for the used range.
  class Interrupting : public vantora::testing::FaultyApplication {
   public:
    using FaultyApplication::FaultyApplication;
    host::WorkbookPtr ActiveWorkbook() override {
      raise(SIGINT);
      return FaultyApplication::ActiveWorkbook();
    }
  };
  SmallModel model;
  model.shows_progress = true;
  model.wrap_application = [](host::ApplicationPtr application) -> host::ApplicationPtr {
    return std::make_shared<Interrupting>(application,
                                          std::make_shared<vantora::testing::FaultPlan>());
  };
  const CommandResult result = model.Run({"clsYearEnd.ShiftHistory", "--in-place", "--yes"});
  EXPECT_EQ(result.exit_code, 3);
  EXPECT_THAT(result.err, HasSubstr("Shift History: Cancelling, please wait..."));
  EXPECT_TRUE(model.Untouched());
}

TEST(Run, SheetSelectionAndCellsAreSetBeforehand) {
  SmallModel model;
  const CommandResult result =
      model.Run({"clsGlobals.Version", "--in-place", "--sheet", "data 01", "--select", "B2:C3",
                 "--set", "J3=10", "--set", "Planning!A1==C5+1", "--set", "Planning!A2=text"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(result.out, "1: No version information available for DLL\n");
  EXPECT_EQ(CellOf(model.path(), "'Data 01'!J3"), Value(10));
  EXPECT_EQ(CellOf(model.path(), "Planning!A1"), Value(31));
  EXPECT_EQ(CellOf(model.path(), "Planning!A2"), Value("text"));
  auto session = embedded::Session::Open(model.path());
  EXPECT_EQ(session->application()->ActiveSheet()->Name(), "Data 01");
  EXPECT_EQ(session->application()->Selection()->Column(), 2);
  EXPECT_EQ(session->application()->Selection()->RowsCount(), 2);
}

TEST(Run, PlainOpenAndSaveChangesNothing) {
  SmallModel model;
  const CommandResult result =
      model.Run({"clsGlobals.Version", "--output", model.path("out.xlsm").string(), "--changes"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_THAT(result.out, HasSubstr("\nNothing changed.\n"));
  EXPECT_EQ(CellOf(model.path("out.xlsm"), "Planning!D5"), Value(5));
}

TEST(Run, PlanningModelGetsAColumnOnEveryHistorySheet) {
  const auto shared = std::filesystem::path(VANTORA_SOURCE_DIR) / "../shared/models";
  if (!std::filesystem::exists(shared / "planning-2x60.xlsm")) {
    GTEST_SKIP() << "The planning models are not beside the checkout.";
  }
  SmallModel folder;
  std::filesystem::copy_file(shared / "planning-2x60.xlsm", folder.path("planning.xlsm"));
  const CommandResult result = folder.Command(
      {"run", folder.path("planning.xlsm").string(), "clsYearEnd.SaveLastYear", "--in-place",
       "--answer", "OK", "--answer", "frmSaveComments:txtComments=check;butText", "--changes"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_THAT(result.out, HasSubstr("more cells\n"));
  EXPECT_THAT(result.out, HasSubstr("Other changes\n  comment added at "));
  auto before = embedded::Session::Open(shared / "planning-2x60.xlsm");
  auto after = embedded::Session::Open(folder.path("planning.xlsm"));
  int saved_sheets = 0;
  for (const auto& sheet : after->application()->ActiveWorkbook()->Worksheets()) {
    if (result.out.find(sheet->Name() + "\n  column ") == std::string::npos) continue;
    ++saved_sheets;
    // Row 6, columns N and AD.
    EXPECT_EQ(sheet->Cells(6, 30)->Value(),
              before->Worksheet(sheet->Name())->Cells(6, 14)->Value());
  }
  EXPECT_EQ(saved_sheets, 2);
}

TEST(List, NamesEveryClassWithItsMethods) {
  SmallModel model;
  const CommandResult result = model.Command({"list"});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_THAT(result.out, HasSubstr("clsYearEnd: "));
  EXPECT_THAT(result.out, HasSubstr("  SaveHistoryYear\n      Saves one of the history years"));
  EXPECT_THAT(result.out, HasSubstr("      asks: frmSaveHistoryPrompt, confirmation (OK/Cancel), "
                                    "frmSaveComments\n"));
  EXPECT_THAT(result.out, HasSubstr("  PutDLLVersion versionText\n"));
  EXPECT_THAT(result.out, HasSubstr("clsFreeze: Freezing the current results as the base case\n"));
}

}  // namespace
}  // namespace vantora::cli
