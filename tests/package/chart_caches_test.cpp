#include "package/chart_caches.h"

#include <gmock/gmock.h>

#include "package/package_support.h"

namespace vantora::embedded {
namespace {

using ::testing::HasSubstr;

constexpr char kChart[] = "xl/charts/chart1.xml";

class ChartCachesTest : public PackageTest {
 protected:
  // Row 1: 10, 20, blank, "x"; row 2: years. A chart of both.
  std::unique_ptr<WorkbookFile> OpenChart(const std::string& chart) const {
    Parts parts = OneSheet(
        "<sheetData><row><c><v>10</v></c><c><v>20</v></c><c/><c "
        "t=\"str\"><v>x</v></c></row><row><c>"
        "<v>2023</v></c><c><v>2024</v></c></row></sheetData><drawing r:id=\"rId1\"/>",
        "<definedNames><definedName name=\"Costs\">Data!$A$1:$B$1</definedName></definedNames>");
    const std::string rels =
        "<Relationships><Relationship Id=\"rId1\" Type=\"x/KIND\" "
        "Target=\"TARGET\"/></Relationships>";
    auto with = [&](const char* kind, const char* target) {
      std::string text = rels;
      text.replace(text.find("KIND"), 4, kind);
      return text.replace(text.find("TARGET"), 6, target);
    };
    parts["xl/worksheets/_rels/sheet1.xml.rels"] = with("drawing", "../drawings/drawing1.xml");
    parts["xl/drawings/drawing1.xml"] = "<wsDr/>";
    parts["xl/drawings/_rels/drawing1.xml.rels"] = with("chart", "../charts/chart1.xml");
    parts[kChart] = "<c:chart xmlns:c=\"x\">" + chart + "</c:chart>";
    return OpenParts(parts);
  }
  static std::string Numbers(const std::string& formula, const std::string& points) {
    return "<c:numRef><c:f>" + formula + "</c:f><c:numCache><c:formatCode>0%</c:formatCode>" +
           points + "</c:numCache></c:numRef>";
  }
  static void Set(WorkbookFile& file, CellAddress place, double number) {
    file.model().sheets[0]->cells.SetConstant(place, CellValue::Number(number));
  }
};

TEST_F(ChartCachesTest, OnlyPointsThatDifferAreWritten) {
  const std::string untouched =
      Numbers("Data!$A$2:$B$2", "<c:ptCount val=\"2\"/><c:pt idx=\"0\"><c:v>old</c:v></c:pt>");
  auto file = OpenChart(
      untouched +
      Numbers("Data!$A$1:$D$1",
              "<c:ptCount val=\"4\"/><c:pt idx=\"0\"><c:v>10.0</c:v></c:pt><c:pt idx=\"1\" "
              "formatCode=\"0\"><c:v>20</c:v></c:pt><c:pt idx=\"3\"><c:v>0</c:v></c:pt>"));
  Set(*file, {1, 2}, 0.5);
  Set(*file, {1, 3}, 30);
  EXPECT_EQ(
      Saved(*file, kChart),
      "<c:chart xmlns:c=\"x\">" + untouched +
          Numbers("Data!$A$1:$D$1",
                  "<c:ptCount val=\"4\"/><c:pt idx=\"0\"><c:v>10.0</c:v></c:pt><c:pt idx=\"1\" "
                  "formatCode=\"0\"><c:v>0.5</c:v></c:pt><c:pt idx=\"2\"><c:v>30</c:v></c:pt>"
                  "<c:pt idx=\"3\"><c:v>0</c:v></c:pt>") +
          "</c:chart>");
}

TEST_F(ChartCachesTest, PointsComeAndGo) {
  auto file = OpenChart(Numbers("(Data!$A$1,Data!$C$1)",
                                "<c:ptCount val=\"9\"/><c:pt idx=\"0\"><c:v>10</c:v></c:pt>"
                                "<c:pt idx=\"8\"><c:v>1</c:v></c:pt><c:extLst/>") +
                        Numbers("Costs", "<c:ptCount val=\"2\"/>"));
  file->model().sheets[0]->cells.Erase({1, 1});
  EXPECT_EQ(Saved(*file, kChart),
            "<c:chart xmlns:c=\"x\">" +
                Numbers("(Data!$A$1,Data!$C$1)", "<c:ptCount val=\"2\"/><c:extLst/>") +
                Numbers("Costs", "<c:ptCount val=\"2\"/><c:pt idx=\"1\"><c:v>20</c:v></c:pt>") +
                "</c:chart>");
}

TEST_F(ChartCachesTest, TextsKeepTheirFormatUntilTheirCellChanges) {
  auto file = OpenChart(
      "<c:strRef><c:f>Data!$A$2:$B$2</c:f><c:strCache><c:ptCount val=\"2\"/><c:pt idx=\"0\"><c:v>FY"
      "2023</c:v></c:pt><c:pt idx=\"1\"><c:v>FY2024</c:v></c:pt></c:strCache></c:strRef>"
      "<c:numRef><c:f>[1]Other!$A$1</c:f><c:numCache><c:ptCount "
      "val=\"1\"/></c:numCache></c:numRef>");
  Set(*file, {2, 2}, 2025.25);
  std::string saved = Saved(*file, kChart);
  EXPECT_THAT(saved,
              HasSubstr("<c:pt idx=\"0\"><c:v>FY2023</c:v></c:pt><c:pt idx=\"1\"><c:v>2025.25"
                        "</c:v></c:pt>"));
  EXPECT_THAT(saved,
              HasSubstr("<c:f>[1]Other!$A$1</c:f><c:numCache><c:ptCount val=\"1\"/></c:num"));
}

std::string Levels(const std::string& formula, const std::string& inner) {
  return "<c:multiLvlStrRef><c:f>" + formula + "</c:f><c:multiLvlStrCache>" + inner +
         "</c:multiLvlStrCache></c:multiLvlStrRef>";
}

std::string Level(std::initializer_list<std::pair<int, const char*>> points) {
  std::string text = "<c:lvl>";
  for (const auto& [index, value] : points) {
    text += "<c:pt idx=\"" + std::to_string(index) + "\"><c:v>" + value + "</c:v></c:pt>";
  }
  return text + "</c:lvl>";
}

TEST_F(ChartCachesTest, CategoriesInLevelsFollowTheirRowsOrColumns) {
  // The level next to the axis is the last row, or column.
  auto file = OpenChart(
      Levels("Data!$A$1:$D$2", "<c:ptCount val=\"4\"/>" + Level({{0, "FY23"}, {1, "2024"}}) +
                                   Level({{0, "10"}, {1, "20"}, {3, "x"}})) +
      Levels("Data!$A$1:$B$3",
             "<c:ptCount val=\"2\"/>" + Level({{0, "20"}, {1, "2024"}}) + "<c:lvl/>"));
  Set(*file, {2, 2}, 2025);
  Set(*file, {1, 3}, 7);
  Set(*file, {3, 1}, 1);
  EXPECT_EQ(
      Saved(*file, kChart),
      "<c:chart xmlns:c=\"x\">" +
          Levels("Data!$A$1:$D$2", "<c:ptCount val=\"4\"/>" + Level({{0, "FY23"}, {1, "2025"}}) +
                                       Level({{0, "10"}, {1, "20"}, {2, "7"}, {3, "x"}})) +
          Levels("Data!$A$1:$B$3", "<c:ptCount val=\"3\"/>" + Level({{0, "20"}, {1, "2025"}}) +
                                       Level({{0, "10"}, {1, "2023"}, {2, "1"}})) +
          "</c:chart>");
}

TEST_F(ChartCachesTest, LevelsAndCategoriesComeWithColumns) {
  auto file = OpenChart(
      Levels("Data!$A$1:$E$2",
             "<c:ptCount val=\"4\"/>" + Level({{0, "2023"}}) + Level({{0, "10"}})) +
      Levels("Data!$A$1:$C$2", "<c:ptCount val=\"2\"/>" + Level({{1, "2024"}}) + Level({})) +
      Levels("Data!$A$1:$A$2", "<c:ptCount val=\"2\"/>" + Level({}) + Level({{0, "gone"}})));
  Set(*file, {1, 1}, 11);
  EXPECT_EQ(
      Saved(*file, kChart),
      "<c:chart xmlns:c=\"x\">" +
          Levels("Data!$A$1:$E$2", "<c:ptCount val=\"5\"/>" + Level({{0, "2023"}, {1, "2024"}}) +
                                       Level({{0, "11"}, {1, "20"}, {3, "x"}})) +
          // Two rows and two levels before: it is not told which is which, and rows stay.
          Levels("Data!$A$1:$C$2", "<c:ptCount val=\"3\"/>" + Level({{0, "2023"}, {1, "2024"}}) +
                                       Level({{0, "11"}, {1, "20"}})) +
          Levels("Data!$A$1:$A$2",
                 "<c:ptCount val=\"1\"/>" + Level({{0, "2023"}}) + Level({{0, "11"}})) +
          "</c:chart>");
}

}  // namespace
}  // namespace vantora::embedded
