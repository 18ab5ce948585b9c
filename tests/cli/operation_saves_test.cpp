// Operations that save the workbook themselves, and what the host asks, through the command.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/small_model.h"

namespace vantora::cli {
namespace {

using ::testing::HasSubstr;
using vantora::testing::CellOf;
using vantora::testing::CommandResult;
using vantora::testing::SmallModel;

std::vector<std::string> WithTitle(std::vector<std::string> arguments) {
  arguments.insert(arguments.end(), {"--set", "Planning!A1=T", "--sheet", "Data 01"});
  return arguments;
}

TEST(OperationSaves, TheTargetHoldsTheStateAtTheSaveAndNothingElseIsWritten) {
  SmallModel model;
  const CommandResult result = model.Run(
      WithTitle({"clsHider.BeforeSave", "false", "--output", model.path("out.xlsm").string()}));
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(model.Files(), "model.xlsm out.xlsm ");
  EXPECT_EQ(CellOf(model.path("out.xlsm"), "Planning!C34"),
            Value("You must enable Excel macros to run Vantora"));
  EXPECT_EQ(CellOf(model.path("out.xlsm"), "Planning!AN1"), Value("Data 01"));

  EXPECT_EQ(model.Run(WithTitle({"clsHider.BeforeSave", "false", "--in-place"})).exit_code, 0);
  EXPECT_EQ(model.Files(), "model.xlsm model.xlsm.bak out.xlsm ");
  EXPECT_EQ(vantora::testing::BytesOf(model.path("model.xlsm.bak")), model.bytes());
}

TEST(OperationSaves, ADryRunOrACancelledQuestionWritesNothing) {
  SmallModel model;
  EXPECT_EQ(model.Run(WithTitle({"clsHider.BeforeSave", "false", "--dry-run"})).exit_code, 0);
  const CommandResult cancelled =
      model.Run(WithTitle({"clsHider.BeforeSave", "true", "--in-place", "--answer", "Cancel"}));
  EXPECT_EQ(cancelled.exit_code, 3);
  EXPECT_THAT(cancelled.err, HasSubstr("[Vantora SaveAs]\nSave as: Excel 2007 (*.xlsm), Excel "
                                       "2003 (*.xls)\n(answered: Cancel)"));
  EXPECT_EQ(model.Run(WithTitle({"clsHider.BeforeSave", "true", "--in-place"})).exit_code, 4);
  EXPECT_TRUE(model.Untouched());
}

TEST(OperationSaves, ASaveThatTheTargetDoesNotFitSaysWhy) {
  SmallModel model;
  const CommandResult other = model.Run(WithTitle(
      {"clsHider.BeforeSave", "true", "--in-place", "--answer", "GetSaveAsFilename=Else.xlsm"}));
  EXPECT_EQ(other.exit_code, 1);
  EXPECT_THAT(other.err, HasSubstr("error 1004 during workbook save operation"));
  EXPECT_THAT(other.err, HasSubstr("--in-place writes the model only"));
  const CommandResult old = model.Run(
      WithTitle({"clsHider.BeforeSave", "true", "--output", model.path("out.xlsm").string(),
                 "--answer", "GetSaveAsFilename=Old.xls"}));
  EXPECT_THAT(old.err, HasSubstr("must end in .xls, and --output is"));
  // Only an operation that saves as one writes an .xls file.
  EXPECT_EQ(model.Run({"clsGlobals.Version", "--output", model.path("out.xls").string()}).exit_code,
            2);
  EXPECT_TRUE(model.Untouched());
}

TEST(OperationSaves, TheTerminalIsAskedForFilesAndRanges) {
  SmallModel model;
  model.interactive = true;
  model.typed = "\n";  // the suggested name has no ending: the workbook's own format
  const CommandResult saved = model.Run(
      WithTitle({"clsHider.BeforeSave", "true", "--output", model.path("out.xlsm").string()}));
  EXPECT_EQ(saved.exit_code, 0) << saved.err;
  EXPECT_THAT(saved.err, HasSubstr("[model]: "));

  model.typed = "nonsense\ncancel\n";
  const CommandResult asked = model.Run({"clsFormatting.LeftFormat", "--dry-run"});
  EXPECT_EQ(asked.exit_code, 3);
  EXPECT_THAT(asked.err, HasSubstr("\"nonsense\" is no reference to cells"));
}

TEST(OperationSaves, AnswersGiveRangesOfSeveralAreas) {
  SmallModel model;
  const CommandResult done = model.Run({"clsFormatting.LeftFormat", "--dry-run", "--answer",
                                        "InputRange='Data 01'!J3:K3,'Data 01'!M4"});
  EXPECT_EQ(done.exit_code, 0) << done.err;
  const CommandResult malformed = model.Run(
      {"clsFormatting.LeftFormat", "--dry-run", "--answer", "InputRange=Planning!A1,'Data 01'!A1"});
  EXPECT_EQ(malformed.exit_code, 4);
  EXPECT_THAT(malformed.err, HasSubstr("cells of several sheets"));
  EXPECT_EQ(
      model.Run({"clsFormatting.LeftFormat", "--dry-run", "--answer", "InputRange="}).exit_code, 2);
}

}  // namespace
}  // namespace vantora::cli
