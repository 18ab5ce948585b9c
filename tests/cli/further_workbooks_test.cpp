// Workbooks that are open beside the model.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "cli/arguments.h"
#include "cli/small_model.h"

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

class FurtherWorkbooks : public ::testing::Test {
 protected:
  FurtherWorkbooks() {
    testing::WriteSmallModel(model.path("other.xlsm"));
    other_bytes = BytesOf(model.path("other.xlsm"));
  }
  // Copies the sheet Data 01 into the other workbook.
  CommandResult Copy(Arguments more) {
    Arguments arguments = {"clsCopyWorksheet.CopyWorksheet",
                           "--sheet",
                           "Data 01",
                           "--with",
                           model.path("other.xlsm").string(),
                           "--answer",
                           "frmCopyWorksheet:cboTargetWorkbook=other.xlsm;butCopy"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return model.Run(arguments);
  }
  std::string OutputFor(const std::string& name) {
    return "other.xlsm=" + model.path(name).string();
  }

  SmallModel model;
  std::string other_bytes;
};

TEST_F(FurtherWorkbooks, AreSavedUnderTheNameGiven) {
  const CommandResult result = Copy({"--output", model.path("a.xlsm").string(), "--output-for",
                                     OutputFor("b.xlsm"), "--changes"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(CellOf(model.path("b.xlsm"), "'Copy of Data 01'!A1"), Value("S"));
  EXPECT_THAT(result.err, AllOf(HasSubstr("Copy is complete."), HasSubstr("Written: "),
                                HasSubstr("b.xlsm"), Not(HasSubstr("warning"))));
  EXPECT_THAT(result.out, AllOf(HasSubstr("In other.xlsm:\nCopy of Data 01\n"),
                                HasSubstr("worksheet \"Sheet1\" added")));
  EXPECT_EQ(BytesOf(model.path("other.xlsm")), other_bytes);
}

TEST_F(FurtherWorkbooks, ChangesThatAreNotSavedAreTold) {
  const CommandResult result = Copy({"--output", model.path("a.xlsm").string(), "--json"});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_THAT(result.err, HasSubstr("other.xlsm was changed, and the changes are not saved; save "
                                    "them with --output-for other.xlsm=FILE."));
  const auto further = nlohmann::json::parse(result.out)["further"];
  ASSERT_EQ(further.size(), 1u);
  EXPECT_EQ(further[0]["workbook"], "other.xlsm");
  EXPECT_TRUE(further[0]["changed"].get<bool>());
  EXPECT_TRUE(further[0]["written"].is_null());
  EXPECT_FALSE(further[0]["changes"]["cells"].empty());
}

TEST_F(FurtherWorkbooks, NothingIsSaidOfOneThatDidNotChange) {
  const CommandResult result =
      model.Run({"clsGlobals.Version", "--with", model.path("other.xlsm").string(), "--output",
                 model.path("a.xlsm").string()});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_THAT(result.err, Not(HasSubstr("other.xlsm")));
}

TEST_F(FurtherWorkbooks, NoneIsWrittenWhereOneCannotBe) {
  // The folder goes while the operation is at work.
  const std::filesystem::path folder = model.path("folder");
  const std::string nowhere = (folder / "b.xlsm").string();
  model.wrap_application = [&](host::ApplicationPtr application) {
    std::filesystem::remove(folder);
    return application;
  };
  for (const Arguments& targets :
       {Arguments{"--output", model.path("a.xlsm").string(), "--output-for",
                  "other.xlsm=" + nowhere},
        Arguments{"--output", nowhere, "--output-for", OutputFor("b.xlsm")},
        Arguments{"--in-place", "--output-for", "other.xlsm=" + nowhere}}) {
    std::filesystem::create_directory(folder);
    const CommandResult result = Copy(targets);
    EXPECT_EQ(result.exit_code, 1) << result.err;
    EXPECT_EQ(model.Files(), "model.xlsm other.xlsm ");
    EXPECT_EQ(BytesOf(model.path()), model.bytes());
  }
}

// The outcome's dialog is left with its cancel button, which cancels nothing.
TEST_F(FurtherWorkbooks, TheLastDialogMayBeAnsweredToo) {
  const CommandResult result =
      Copy({"--answer", "frmCopyWorksheet:butCancel", "--output", model.path("a.xlsm").string()});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(Copy({"--dry-run", "--yes"}).exit_code, 0);
  const CommandResult cancelled = model.Run(
      {"clsCopyWorksheet.CopyWorksheet", "--dry-run", "--answer", "frmCopyWorksheet:butCancel"});
  EXPECT_EQ(cancelled.exit_code, 3);
}

struct Mistake {
  Arguments arguments;
  std::string says;
};

TEST_F(FurtherWorkbooks, MistakesAreNamed) {
  const std::string other = model.path("other.xlsm").string();
  const std::string itself = model.path().string();
  const std::string a = model.path("a.xlsm").string();
  const std::vector<Mistake> mistakes = {
      {{"--output", a, "--output-for", "third.xlsm=b.xlsm"}, "no workbook given with --with"},
      {{"--output", a, "--output-for", "other.xlsm="}, "no workbook given with --with"},
      {{"--output", a, "--output-for", "other.xlsm"}, "no workbook given with --with"},
      {{"--output", a, "--output-for", "other.xlsm=" + a}, "can't both be written"},
      {{"--output", a, "--output-for", "other.xlsm=" + other}, "which is opened"},
      {{"--output", a, "--output-for", "other.xlsm=" + itself}, "which is opened"},
      {{"--output", other}, "which is opened"},
      {{"--output", a, "--output-for", "other.xlsm=b.xlsx"}, "must end in .xlsm"},
      {{"--dry-run", "--output-for", OutputFor("b.xlsm")}, "--dry-run writes nothing"},
      {{"--output", a, "--output-for", OutputFor("b.xlsm"), "--output-for", OutputFor("c.xlsm")},
       "given twice"},
  };
  for (const Mistake& mistake : mistakes) {
    const CommandResult result = Copy(mistake.arguments);
    EXPECT_EQ(result.exit_code, 2) << mistake.says;
    EXPECT_THAT(result.err, HasSubstr(mistake.says));
  }
  const CommandResult twice =
      model.Run({"clsGlobals.Version", "--dry-run", "--with", model.path().string()});
  EXPECT_EQ(twice.exit_code, 1);
  EXPECT_THAT(twice.err, HasSubstr("is open already"));
  EXPECT_EQ(model.Files(), "model.xlsm other.xlsm ");
}

TEST(FurtherWorkbookArguments, PathsMayHoldEqualsSigns) {
  const RunOptions run =
      ParseArguments({"run", "m.xlsm", "c.d", "--output", "o.xlsm", "--with", "x=1/a=b.xlsm",
                      "--with", "n.xlsm", "--output-for", "a=b.xlsm=r=1.xlsm"})
          .run;
  ASSERT_EQ(run.further.size(), 2u);
  EXPECT_EQ(run.further[0].output, "r=1.xlsm");
  EXPECT_EQ(run.further[1].output, "");
}

}  // namespace
}  // namespace vantora::cli
