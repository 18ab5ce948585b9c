// The menus of a model on the command line: showing them, and running their entries.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "cli/small_model.h"
#include "package/zip_archive.h"

namespace vantora::cli {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;
using vantora::testing::CellOf;
using vantora::testing::CommandResult;
using vantora::testing::SmallModel;

using Arguments = std::vector<std::string>;

// Makes Planning the Reference Sheet and the dashboard: the menu table in column F, the charts in
// L, the configurations in R, and column G hidden in configuration 2.
const Arguments kMenuCells = {"Data 01'!A1=S M1 I23",     "Planning'!A1=X14 D M2",
                              "Planning'!B1=n",           "Planning'!C1=k",
                              "Planning'!D1=c",           "Planning'!E1=s",
                              "Planning'!F1=m",           "Planning'!G1=H(2)",
                              "Planning'!L1=g",           "Planning'!R1=h",
                              "Planning'!A40=end",        "Planning'!F14=Year &end",
                              "Planning'!G15=Shift",      "Planning'!I15=va_shifthistory",
                              "Planning'!K15=39",         "Planning'!F16=Version > line",
                              "Planning'!I16=VA_Version", "Planning'!F17=Tools",
                              "Planning'!G18=Own",        "Planning'!I18=VA_OfTheModel",
                              "Planning'!G19=Write",      "Planning'!I19=VA_PutDLLVersion",
                              "Planning'!G20=Twin",       "Planning'!I20=VA_Version",
                              "Planning'!G21=Twin",       "Planning'!I21=VA_Version",
                              "Planning'!L14=2",          "Planning'!N14=Sales",
                              "Planning'!L15=19",         "Planning'!N15=Cash",
                              "Planning'!R14=1",          "Planning'!S14=Board",
                              "Planning'!R15=2",          "Planning'!S15=Bank",
                              "Planning'!R16=0"};

constexpr char kModelMenu[] =
    "Vantora\n"
    "  Data 01                               VA_SelSheet, face 23\n"
    "  --------\n"
    "  Planning                              VA_SelSheet\n"
    "  --------\n"
    "  Year end\n"
    "    Shift                               va_shifthistory, face 39\n"
    "  Version > line                        VA_Version\n"
    "  Tools\n"
    "    Own                                 VA_OfTheModel\n"
    "    Write                               VA_PutDLLVersion\n"
    "    Twin                                VA_Version\n"
    "    Twin                                VA_Version\n";

constexpr char kDashboardMenu[] =
    "Dashboard\n"
    "  Chart Selection\n"
    "    Sales                               VA_SelChart, tag 1:2\n"
    "    --------\n"
    "    Cash                                VA_SelChart, tag 1:19\n"
    "  Right Chart Selection                 hidden\n"
    "    Sales                               VA_SelChart, tag 2:2\n"
    "    --------\n"
    "    Cash                                VA_SelChart, tag 2:19\n"
    "  Dashboard Configuration\n"
    "    Show all dashboard columns          VA_selConfig, tag 0\n"
    "    Board                               VA_selConfig, tag 1\n"
    "    Bank                                VA_selConfig, tag 2\n"
    "    --------\n"
    "    Maintain configurations             VA_DashboardConfigure, tag 0\n";

class MenuCommand : public ::testing::Test {
 protected:
  // `vantora menu <model>` with the sheets' flags and lists, begun on Data 01.
  CommandResult Menu(Arguments arguments, const Arguments& more_cells = {}) {
    arguments.insert(arguments.begin(), {"menu", model.path().string(), "--sheet", "Data 01"});
    for (const auto* cells : {&kMenuCells, &more_cells}) {
      for (const std::string& cell : *cells) {
        arguments.insert(arguments.end(), {"--set", "'" + cell});
      }
    }
    return model.Command(arguments);
  }
  CommandResult Pick(const std::string& entry, Arguments arguments = {"--dry-run"},
                     const Arguments& more_cells = {}) {
    arguments.insert(arguments.end(), {"--pick", entry});
    return Menu(arguments, more_cells);
  }
  std::string ActiveSheetOfModel() {
    return embedded::Session::Open(model.path())->application()->ActiveSheet()->Name();
  }

  SmallModel model;
};

TEST_F(MenuCommand, ShowsTheModelsMenuAndTheDashboardsWhereItIsActive) {
  CommandResult result = Menu({});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(result.out, kModelMenu);
  EXPECT_EQ(result.err, "");
  result = Menu({"--dashboard"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(result.out, std::string(kModelMenu) + kDashboardMenu);
  EXPECT_TRUE(model.Untouched());
}

TEST_F(MenuCommand, ShowsThemAsJson) {
  const CommandResult result = Menu({"--json", "--dashboard"});
  const auto menus = nlohmann::json::parse(result.out)["menus"];
  ASSERT_EQ(menus.size(), 2u);
  EXPECT_EQ(menus[0]["tag"], "Vantora");
  EXPECT_EQ(menus[0]["entries"][2]["caption"], "Year &end");
  EXPECT_EQ(menus[0]["entries"][2]["begins_group"], true);
  const auto shift = menus[0]["entries"][2]["entries"][0];
  EXPECT_EQ(shift["macro"], "va_shifthistory");
  EXPECT_EQ(shift["face"], 39);
  EXPECT_FALSE(shift.contains("entries"));
  EXPECT_EQ(menus[1]["entries"][1]["visible"], false);
}

TEST_F(MenuCommand, TellsWhatIsWrongWithTheMenuBesideIt) {
  CommandResult result = Menu({}, {"Planning'!I18="});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_THAT(result.err, HasSubstr("Menu table entry on Reference sheet for Own has no macro."));
  EXPECT_THAT(result.out, HasSubstr("    Write   "));
  EXPECT_THAT(result.out, Not(HasSubstr("Own")));
  result = Menu({}, {"Planning'!F19=Button"});  // a button, with sub-items below it
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_THAT(result.err, HasSubstr("(error 438)\n"));
  result = Menu({"--dashboard"}, {"Planning'!A1=X14"});
  EXPECT_EQ(result.exit_code, 2);
  EXPECT_THAT(result.err, HasSubstr("no sheet has a \"D\" in its cell A1."));
}

TEST_F(MenuCommand, PickedEntriesRunTheirMethod) {
  CommandResult result = Pick("vantora>YEAR END > shift", {"--in-place", "--answer", "OK"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_THAT(result.err, HasSubstr("This will shift all five history years."));
  EXPECT_EQ(CellOf(model.path(), "'Data 01'!J3"), Value(2));
  const std::filesystem::path journal = model.path("j");
  EXPECT_EQ(
      Pick("Vantora > Year &end > Shift", {"--in-place", "--yes", "--journal", journal.string()})
          .exit_code,
      0);
  const embedded::ZipArchive kept(journal);
  ASSERT_EQ(kept.entries()[0].name, "journal.json");
  EXPECT_EQ(nlohmann::json::parse(kept.Read(0))["operation"], "Vantora > Year &end > Shift");
  // What a method returns is printed, and a caption may hold what separates captions.
  result = Pick("Vantora > Version > line");
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(result.out, "1: No version information available for DLL\n");
}

TEST_F(MenuCommand, PickedSheetIsActivated) {
  EXPECT_EQ(Pick("Vantora > Planning", {"--in-place"}).exit_code, 0);
  EXPECT_EQ(ActiveSheetOfModel(), "Planning");
}

TEST_F(MenuCommand, PickedConfigurationIsAppliedToTheDashboard) {
  const auto column_is_hidden = [&](int column) {
    return embedded::Session::Open(model.path())
        ->Worksheet("Planning")
        ->Columns(column)
        ->ColumnsHidden();
  };
  const std::string configuration = "Dashboard > Dashboard Configuration > ";
  CommandResult result = Pick(configuration + "Bank", {"--in-place", "--dashboard"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(ActiveSheetOfModel(), "Planning");
  EXPECT_TRUE(column_is_hidden(7));
  EXPECT_FALSE(column_is_hidden(6));
  Pick(configuration + "Show all dashboard columns", {"--in-place", "--dashboard"});
  EXPECT_FALSE(column_is_hidden(7));
}

TEST_F(MenuCommand, PickedChartIsScrolledTo) {
  const CommandResult result =
      Pick("Dashboard > Chart Selection > Cash", {"--in-place", "--dashboard"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  auto session = embedded::Session::Open(model.path());
  EXPECT_EQ(session->application()->ActiveSheet()->Name(), "Planning");
  EXPECT_EQ(session->application()->ActiveWindow()->ScrollColumn(), 19);
}

TEST_F(MenuCommand, WhatCannotBePickedIsNamed) {
  struct Case {
    const char* entry;
    const char* says;
  } const cases[] = {
      {"Vantora > Year", "have no entry \"Vantora > Year\""},
      {"Vantora > Shift", "and with --dashboard the dashboard's as well."},
      {"File", "have no entry"},
      {"Vantora > Year end", "is a menu; pick one of its entries."},
      {"Vantora > Tools > Own",
       "The entry \"Own\" can't be carried out: its macro VA_OfTheModel is the workbook's own, "
       "and runs in Excel only."},
      {"Vantora > Tools > Write", "takes the arguments versionText; 0 given."},
      {"Vantora > Tools > Twin", "The menus have 2 entries \"Vantora > Tools > Twin\"."},
  };
  for (const Case& c : cases) {
    const CommandResult result = Pick(c.entry, {"--in-place"});
    EXPECT_EQ(result.exit_code, 2) << c.entry;
    EXPECT_THAT(result.err, HasSubstr(c.says));
    EXPECT_TRUE(model.Untouched());
  }
  const CommandResult hidden =
      Pick("Dashboard > Right Chart Selection > Cash", {"--dry-run", "--dashboard"});
  EXPECT_EQ(hidden.exit_code, 2);
  EXPECT_THAT(hidden.err, HasSubstr("is hidden."));
}

TEST_F(MenuCommand, MistakesInTheOptionsAreNamed) {
  const std::string path = model.path().string();
  struct Case {
    Arguments arguments;
    const char* says;
  } const cases[] = {
      {{"menu"}, "MODEL"},
      {{"menu", path, "--pick", "Vantora > Planning"}, "exactly one of --output FILE"},
      {{"menu", path, "--pick", " ", "--dry-run"}, "--pick names no entry."},
      {{"menu", path, "--in-place"}, "Showing the menus writes nothing"},
      {{"menu", path, "--changes"}, "Showing the menus writes nothing"},
      {{"menu", path, "clsYearEnd.ShiftHistory"}, "clsYearEnd.ShiftHistory"},
      {{"menu", model.path("none.xlsm").string()}, "none.xlsm"},
  };
  for (const Case& c : cases) {
    const CommandResult result = model.Command(c.arguments);
    EXPECT_NE(result.exit_code, 0);
    EXPECT_THAT(result.err, HasSubstr(c.says));
    EXPECT_EQ(result.out, "");
  }
}

// The session's own menu object takes the calls of `run` too.
TEST_F(MenuCommand, RunReachesTheSessionsMenuObject) {
  Arguments arguments = {"clsMenuManagement.SelectConfig", "-2", "--in-place"};
  for (const std::string& cell : kMenuCells) {
    arguments.insert(arguments.end(), {"--set", "'" + cell});
  }
  const CommandResult result = model.Run(arguments);
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_TRUE(
      embedded::Session::Open(model.path())->Worksheet("Planning")->Columns(7)->ColumnsHidden());
  EXPECT_EQ(model.Run({"clsMenuManagement.SelectConfig", "40000", "--dry-run"}).exit_code, 1);
}

}  // namespace
}  // namespace vantora::cli
