// recalculate, diff, journal and undo.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "cli/small_model.h"
#include "package/workbook_file.h"

namespace vantora::cli {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using vantora::testing::CommandResult;
using vantora::testing::SmallModel;

class AuthorTools : public ::testing::Test {
 protected:
  std::string Path(const std::string& name = "model.xlsm") { return model.path(name).string(); }
  // A year end whose result and journal stand beside the model.
  CommandResult ShiftWithJournal() {
    return model.Run({"clsYearEnd.ShiftHistory", "--output", Path("shifted.xlsm"), "--yes",
                      "--journal", Path("shift.journal")});
  }

  SmallModel model;
};

TEST_F(AuthorTools, RecalculateTellsStoredValuesThatDiffer) {
  {
    // Another program stored 99 for =O3*2.
    auto file = embedded::WorkbookFile::Open(model.path());
    file->model().sheets[1]->cells.SetValue({3, 16}, embedded::CellValue::Number(99));
    file->Save(model.path());
  }
  const CommandResult compared = model.Command({"recalculate", Path(), "--compare"});
  EXPECT_THAT(compared.out, HasSubstr("1 stored value differs\n  Data 01!P3  99  ->  12\n"));
  EXPECT_THAT(compared.out, HasSubstr("Planning!D5: "));  // WEBSERVICE

  const CommandResult json =
      model.Command({"recalculate", Path(), "--compare", "--json", "--output", Path("new.xlsm")});
  const auto outcome = nlohmann::json::parse(json.out);
  EXPECT_EQ(outcome["formulas"], 3);
  EXPECT_EQ(outcome["uncalculated"].size(), 1u);
  EXPECT_THAT(model.Command({"recalculate", Path("new.xlsm"), "--compare"}).out,
              HasSubstr("0 stored values differ"));
}

TEST_F(AuthorTools, DiffTellsCellsAndParts) {
  EXPECT_EQ(model.Command({"diff", Path(), Path()}).out, "The workbooks are the same.\n");
  model.Run({"clsGlobals.Version", "--output", Path("other.xlsm"), "--set", "'Data 01'!O3=7",
             "--set", "Planning!C5==SUM('Data 01'!J3:N3)"});
  const std::string cells = model.Command({"diff", Path(), Path("other.xlsm")}).out;
  EXPECT_THAT(cells, HasSubstr("Data 01\n  O3  6  ->  7\n  P3  =O3*2 [12]  ->  =O3*2 [14]\n"));
  EXPECT_THAT(cells, HasSubstr("C5  =SUM('Data 01'!J3:O3) [21]  ->  =SUM('Data 01'!J3:N3) [15]\n"));
  const auto json =
      nlohmann::json::parse(model.Command({"diff", Path(), Path("other.xlsm"), "--json"}).out);
  EXPECT_EQ(json["cells"].size(), 3u);
}

TEST_F(AuthorTools, UndoGivesBackEveryPart) {
  ASSERT_EQ(ShiftWithJournal().exit_code, 0);
  EXPECT_THAT(model.Command({"diff", Path(), Path("shifted.xlsm")}).out, HasSubstr("Data 01"));
  const CommandResult undone =
      model.Command({"undo", Path("shifted.xlsm"), "--journal", Path("shift.journal"), "--output",
                     Path("back.xlsm")});
  EXPECT_EQ(undone.exit_code, 0) << undone.err;
  EXPECT_EQ(model.Command({"diff", Path(), Path("back.xlsm")}).out,
            "The workbooks are the same.\n");
}

TEST_F(AuthorTools, UndoRefusesAFileThatChangedSince) {
  ASSERT_EQ(ShiftWithJournal().exit_code, 0);
  ASSERT_EQ(model
                .Command({"run", Path("shifted.xlsm"), "clsGlobals.Version", "--in-place", "--set",
                          "'Data 01'!J3=99"})
                .exit_code,
            0);
  const CommandResult undone =
      model.Command({"undo", Path("shifted.xlsm"), "--journal", Path("shift.journal"), "--output",
                     Path("back.xlsm")});
  EXPECT_EQ(undone.exit_code, 1);
  EXPECT_THAT(undone.err, HasSubstr("is not as the run left it"));
  EXPECT_FALSE(std::filesystem::exists(model.path("back.xlsm")));
}

TEST_F(AuthorTools, JournalNeedsSomethingWrittenAndAJournalIsOne) {
  const CommandResult dry =
      model.Run({"clsYearEnd.ShiftHistory", "--dry-run", "--yes", "--journal", Path("j")});
  EXPECT_EQ(dry.exit_code, 2);
  EXPECT_TRUE(model.Untouched());
  const CommandResult no_journal =
      model.Command({"undo", Path(), "--journal", Path(), "--output", Path("back.xlsm")});
  EXPECT_EQ(no_journal.exit_code, 1);
  EXPECT_THAT(no_journal.err, HasSubstr("is no journal of a run"));
}

TEST_F(AuthorTools, JournalReplacesNoWorkbookOfTheRun) {
  std::filesystem::copy_file(model.path(), model.path("other.xlsm"));
  for (const char* name : {"./model.xlsm", "out.xlsm", "other.xlsm", "other-out.xlsm"}) {
    const CommandResult result = model.Run(
        {"clsGlobals.Version", "--output", Path("out.xlsm"), "--with", Path("other.xlsm"),
         "--output-for", "other.xlsm=" + Path("other-out.xlsm"), "--journal", Path(name)});
    EXPECT_EQ(result.exit_code, 2) << name;
    EXPECT_THAT(result.err, HasSubstr("--journal names the workbook "));
  }
  const CommandResult folder = model.Run({"clsYearEnd.ShiftHistory", "--in-place", "--yes",
                                          "--journal", (model.path("missing") / "j").string()});
  EXPECT_EQ(folder.exit_code, 1);
  EXPECT_THAT(folder.err, HasSubstr("there is no folder"));
  std::filesystem::remove(model.path("other.xlsm"));
  EXPECT_TRUE(model.Untouched());
}

TEST_F(AuthorTools, AJournalThatCantBeWrittenLeavesTheResultAndSaysSo) {
  const std::filesystem::path folder = model.path("folder");
  std::filesystem::create_directory(folder);
  model.wrap_application = [&](host::ApplicationPtr application) {
    std::filesystem::remove(folder);
    return application;
  };
  const CommandResult result = model.Run({"clsYearEnd.ShiftHistory", "--output", Path("out.xlsm"),
                                          "--yes", "--journal", (folder / "j").string()});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_THAT(result.err, HasSubstr("out.xlsm, but not its journal: "));
  EXPECT_THAT(result.err, Not(HasSubstr("Nothing was written")));
  EXPECT_TRUE(std::filesystem::exists(model.path("out.xlsm")));
}

TEST_F(AuthorTools, UndoneAndRecalculatedWorkbooksGetNamesOfTheirOwn) {
  ASSERT_EQ(ShiftWithJournal().exit_code, 0);
  const std::string result = Path("shifted.xlsm");
  const std::string nowhere = (model.path("missing") / "back.xlsm").string();
  for (const std::vector<std::string>& command :
       {std::vector<std::string>{"undo", result, "--journal", Path("shift.journal")},
        std::vector<std::string>{"recalculate", result}}) {
    auto replacing = command;
    replacing.insert(replacing.end(), {"--output", result});
    const CommandResult refused = model.Command(replacing);
    EXPECT_EQ(refused.exit_code, 2);
    EXPECT_THAT(refused.err, HasSubstr("shifted.xlsm itself; choose another name."));
    auto lost = command;
    lost.insert(lost.end(), {"--output", nowhere});
    const CommandResult unwritable = model.Command(lost);
    EXPECT_EQ(unwritable.exit_code, 1);
    EXPECT_THAT(unwritable.err, HasSubstr("there is no folder"));
  }
}

TEST_F(AuthorTools, AFileThatCantBeOpenedGivesTheNumberOfItsError) {
  const std::string missing = Path("missing.xlsm");
  const std::vector<std::vector<std::string>> commands = {
      {"run", missing, "clsGlobals.Version", "--dry-run", "--json"},
      {"inspect", missing, "--json"},
      {"recalculate", missing, "--json"},
      {"diff", missing, missing, "--json"}};
  for (const auto& command : commands) {
    SCOPED_TRACE(command[0]);
    const CommandResult result = model.Command(command);
    EXPECT_EQ(result.exit_code, 1);
    const auto error = nlohmann::json::parse(result.out)["error"];
    EXPECT_EQ(error["file_error"], static_cast<int>(embedded::FileError::Code::kNotFound));
    EXPECT_THAT(error["text"], HasSubstr("missing.xlsm"));
    EXPECT_THAT(result.err, HasSubstr("missing.xlsm"));
  }
}

}  // namespace
}  // namespace vantora::cli
