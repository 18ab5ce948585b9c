// A click on a spin button as a call of the command: the linked cell is set, the button calls.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/small_model.h"

namespace vantora {
namespace {

using testing::CellOf;
using testing::CommandResult;
using ::testing::HasSubstr;

constexpr std::string_view kRelationships =
    "http://schemas.openxmlformats.org/officeDocument/2006/relationships/";

// A planning sheet with two blocks: "Spinner 1", linked to D8, stands in the legacy drawing alone,
// "Spinner 2", linked to D12, has a properties part.
void WriteSpinnerModel(const std::filesystem::path& path) {
  auto session = embedded::Session::Create({"Cover", "Planning"});
  auto put = [&](const char* cell, const Value& value) {
    session->Range("Planning!" + std::string(cell))->SetValue(value);
  };
  put("A1", "Planning");
  put("C1", "f");
  put("AD1", "s");
  put("C5", "x");
  put("Q5", 1.5);
  for (const char* row : {"9", "13"}) {
    put(("C" + std::string(row)).c_str(), "i");
    put(("P" + std::string(row)).c_str(), 100);
    put(("Z" + std::string(row)).c_str(), "=SUM(P" + std::string(row) + ":Y" + row + ")");
  }
  put("D8", 1);
  put("C10", "end");
  put("D12", 1);
  put("C14", "end");
  put("D10", 1);
  put("D14", 1);

  embedded::WorkbookFile& file = session->file();
  embedded::OpcPackage& package = file.package();
  package.Write("xl/drawings/vmlDrawing1.vml",
                "<xml xmlns:v=\"urn:schemas-microsoft-com:vml\" "
                "xmlns:x=\"urn:schemas-microsoft-com:office:excel\"><v:shape "
                "id=\"Spinner_x0020_1\"><x:ClientData ObjectType=\"Spin\"><x:FmlaLink>$D$8"
                "</x:FmlaLink></x:ClientData></v:shape><v:shape id=\"Spinner_x0020_2\">"
                "<x:ClientData ObjectType=\"Spin\"/></v:shape></xml>");
  package.EnsureDefaultContentType("vml",
                                   "application/vnd.openxmlformats-officedocument.vmlDrawing");
  package.Write("xl/ctrlProps/ctrlProp1.xml",
                "<formControlPr xmlns=\"http://schemas.microsoft.com/office/spreadsheetml/2009/9/"
                "main\" objectType=\"Spin\" fmlaLink=\"$D$12\"/>");
  package.SetContentType("xl/ctrlProps/ctrlProp1.xml",
                         "application/vnd.ms-excel.controlproperties+xml");
  const std::string drawing = package.AddRelationship(
      file.part_of(1), std::string(kRelationships) + "vmlDrawing", "xl/drawings/vmlDrawing1.vml");
  const std::string control = package.AddRelationship(
      file.part_of(1), std::string(kRelationships) + "ctrlProp", "xl/ctrlProps/ctrlProp1.xml");
  embedded::SheetMarkup& markup = file.markup(1);
  const std::string declaration = " xmlns:r=\"" +
                                  std::string(kRelationships.substr(0, kRelationships.size() - 1)) +
                                  "\" r:id=\"";
  markup.FindOrInsert("legacyDrawing").text = "<legacyDrawing" + declaration + drawing + "\"/>";
  markup.FindOrInsert("controls").text = "<controls><control shapeId=\"1026\"" + declaration +
                                         control + "\" name=\"Spinner 2\"/></controls>";
  session->Save(path);
}

class SpinnerCall : public ::testing::Test {
 protected:
  SpinnerCall() { WriteSpinnerModel(path_); }
  CommandResult Click(const std::string& spinner, const std::string& setting) {
    return model_.Command({"run", path_.string(), "clsPlanningSpinners.SpinnerChange", "--sheet",
                           "Planning", "--caller", spinner, "--set", setting, "--in-place"});
  }

  testing::SmallModel model_;
  std::filesystem::path path_ = model_.path("spinners.xlsx");
};

TEST_F(SpinnerCall, MovesTheProjectsOfEitherKindOfSpinButton) {
  const struct {
    const char* spinner;
    const char* linked_cell;
    const char* row;
    const char* end_row;
  } buttons[] = {{"Spinner 1", "D8", "9", "10"}, {"spinner 2", "D12", "13", "14"}};
  for (const auto& button : buttons) {
    SCOPED_TRACE(button.spinner);
    auto cell = [&](const std::string& column, const std::string& row) {
      return CellOf(path_, "Planning!" + column + row);
    };
    const std::string setting = "Planning!" + std::string(button.linked_cell) + "=";
    CommandResult result = Click(button.spinner, setting + "2");
    ASSERT_EQ(result.exit_code, 0) << result.err;
    EXPECT_EQ(cell("P", button.row), Value());
    EXPECT_EQ(cell("Q", button.row), Value(150));
    EXPECT_EQ(cell("Z", button.row), Value(150));
    EXPECT_EQ(cell("D", button.end_row), Value(2));
    // The next click starts from what the first one left in the file.
    result = Click(button.spinner, setting + "1");
    ASSERT_EQ(result.exit_code, 0) << result.err;
    EXPECT_EQ(cell("P", button.row), Value(100));
  }
}

TEST_F(SpinnerCall, TellsWhatTheSheetLacks) {
  const CommandResult result =
      model_.Command({"run", path_.string(), "clsPlanningSpinners.SpinnerChange", "--sheet",
                      "Planning", "--caller", "Spinner 1", "--set", "Planning!AD1=", "--dry-run"});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_THAT(result.err, HasSubstr("clsPlanningSpinners: Missing flag in row 1 to indicate "
                                    "shift-save column"));
}

TEST_F(SpinnerCall, NeedsACaller) {
  const CommandResult result =
      model_.Command({"run", path_.string(), "clsPlanningSpinners.SpinnerChange", "--sheet",
                      "Planning", "--dry-run"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_THAT(result.err, HasSubstr("no shape or control \"\""));
}

// The second warning is critical, which without a choice would report an error.
TEST(ClearAllDataCall, GoesOnAfterBothWarnings) {
  testing::SmallModel model;
  const std::vector<std::string> clear = {"clsClearAllData.ClearAllData",
                                          "--set",
                                          "'Data 01'!A1=Z",
                                          "--in-place",
                                          "--answer",
                                          "OK",
                                          "--answer"};
  auto run = [&](const std::string& last) {
    std::vector<std::string> arguments = clear;
    arguments.push_back(last);
    return model.Run(arguments).exit_code;
  };
  EXPECT_EQ(run("Cancel"), 3);
  EXPECT_TRUE(model.Untouched());
  EXPECT_EQ(run("OK"), 0);
  EXPECT_EQ(CellOf(model.path(), "'Data 01'!J3"), Value());
}

}  // namespace
}  // namespace vantora
