#include "cli/arguments.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantora::cli {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(Arguments, RunTakesTheMethodItsArgumentsAndOptionsInAnyOrder) {
  const Command command =
      ParseArguments({"run",   "--answer",     "OK",        "m.xlsm",   "clsX.Do",
                      "[a,b]", "--in-place",   "-5",        "--answer", "frmX:txt=-1, 2;but",
                      "--set", "'a=b'!C1==A1", "--sheet",   "S 1",      "--select",
                      "A1:B2", "--yes",        "--changes", "--json",   "last"});
  ASSERT_EQ(command.kind, Command::Kind::kRun);
  const RunOptions& run = command.run;
  EXPECT_EQ(run.model, "m.xlsm");
  EXPECT_EQ(run.class_name, "clsX");
  EXPECT_EQ(run.method_name, "Do");
  EXPECT_THAT(run.arguments, ElementsAre("[a,b]", "-5", "last"));
  EXPECT_THAT(run.answers, ElementsAre("OK", "frmX:txt=-1, 2;but"));
  EXPECT_EQ(run.target, Target::kInPlace);
  ASSERT_EQ(run.cells_to_set.size(), 1u);
  EXPECT_EQ(run.cells_to_set[0].reference, "'a=b'!C1");
  EXPECT_EQ(run.cells_to_set[0].value, "=A1");
  EXPECT_EQ(run.sheet, "S 1");
  EXPECT_EQ(run.selection, "A1:B2");
  EXPECT_TRUE(run.yes && run.changes && run.json);
}

TEST(Arguments, AnEmptyValueIsAValue) {
  const RunOptions run =
      ParseArguments({"run", "m", "c.d", "--dry-run", "--set", "A1=", "--answer", ""}).run;
  EXPECT_EQ(run.cells_to_set[0].value, "");
  EXPECT_THAT(run.answers, ElementsAre(""));
  EXPECT_EQ(run.target, Target::kNowhere);
}

TEST(Arguments, HelpAndVersionArePrinted) {
  EXPECT_THAT(ParseArguments({"--help"}).text, HasSubstr("list"));
  EXPECT_THAT(ParseArguments({"run", "--help"}).text, HasSubstr("--in-place"));
  EXPECT_THAT(ParseArguments({"--version"}).text, testing::MatchesRegex("vantora [0-9.]+\n"));
}

struct Mistake {
  std::vector<std::string> arguments;
  std::string says;
};

TEST(Arguments, MistakesAreNamed) {
  const std::vector<Mistake> mistakes = {
      {{}, "A subcommand is required"},
      {{"walk", "m"}, "There is no subcommand \"walk\""},
      {{"walk", "list"}, "There is no subcommand \"walk\""},
      {{"--quick", "list"}, "There is no option --quick"},
      {{"inspect", "m", "n"}, "n"},
      {{"run"}, "MODEL"},
      {{"run", "m"}, "CLASS.METHOD"},
      {{"run", "m", "clsYearEnd", "--dry-run"}, "\"clsYearEnd\" is no CLASS.METHOD"},
      {{"run", "m", ".x", "--dry-run"}, "no CLASS.METHOD"},
      {{"run", "m", "x.", "--dry-run"}, "no CLASS.METHOD"},
      {{"run", "m", "c.d"}, "exactly one of --output"},
      {{"run", "m", "c.d", "--dry-run", "--in-place"}, "exactly one of --output"},
      {{"run", "m", "c.d", "--output"}, "--output"},
      {{"run", "m", "c.d", "--dry-run", "--colour"}, "no option --colour"},
      {{"run", "m", "c.d", "--dry-run", "--set", "A1"}, "no cell and value"},
      {{"run", "m", "c.d", "--dry-run", "--set", "=A1"}, "no cell and value"},
      {{"run", "m", "c.d", "--dry-run", "--set", "'a=b'!C1"}, "no cell and value"},
      {{"run", "m", "c.d", "--dry-run", "--set", "A1=\xE4"}, "\"A1=?\" is not UTF-8"},
      {{"run", "m", "c.d", "--dry-run", "--answer", "frmX:txt=\xE4;but"}, "is not UTF-8"},
      {{"run", "m", "c.d", "\xE4", "--dry-run"}, "is not UTF-8"},
      {{"windows", "m"}, "--mode"},
      {{"windows", "m", "--mode", "up"}, "--mode is ud (the dashboard above the sheet) or lr"},
      {{"list", "all"}, "all"},
  };
  for (const Mistake& mistake : mistakes) {
    try {
      ParseArguments(mistake.arguments);
      ADD_FAILURE() << "accepted: " << testing::PrintToString(mistake.arguments);
    } catch (const UsageError& error) {
      EXPECT_THAT(error.what(), HasSubstr(mistake.says));
    }
  }
}

}  // namespace
}  // namespace vantora::cli
