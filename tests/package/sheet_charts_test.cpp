// Charts of a sheet as its drawing and their parts have them.
#include "package/sheet_charts.h"

#include <gtest/gtest.h>

#include "package/file_error.h"

namespace vantora::embedded {
namespace {

constexpr std::string_view kPart = "xl/charts/chart1.xml";

// What the chart's title says: "none", the text, or the text behind what it is linked to.
std::string TitleOf(const std::string& chart) {
  auto package = OpcPackage::Create();
  package->Write(
      kPart, "<c:chartSpace xmlns:c=\"c\" xmlns:a=\"a\"><c:lang val=\"en-US\"/><c:chart>" + chart +
                 "</c:chart></c:chartSpace>");
  std::optional<ChartText> title = ReadChartTitle(*package, kPart);
  if (!title) return "none";
  return title->formula.empty() ? title->text : "=" + title->formula + " " + title->text;
}

std::string Plot(const std::string& series) {
  return "<c:plotArea><c:layout/><c:lineChart><c:grouping val=\"standard\"/>" + series +
         "</c:lineChart><c:valAx><c:title><c:tx><c:rich><a:p><a:r><a:t>Axis</a:t></a:r></a:p></"
         "c:rich>"
         "</c:tx></c:title></c:valAx></c:plotArea>";
}

TEST(SheetChartsTest, TitlesAreWhatExcelShows) {
  const std::string linked =
      "<c:tx><c:strRef><c:f>Data!$B$8</c:f><c:strCache><c:ptCount val=\"1\"/><c:pt idx=\"0\">"
      "<c:v>Sales &amp; more</c:v></c:pt></c:strCache></c:strRef></c:tx>";
  const std::string named = "<c:ser><c:idx val=\"0\"/>" + linked + "<c:val/></c:ser>";
  const std::string literal = "<c:ser><c:tx><c:v>Costs</c:v></c:tx></c:ser>";
  const std::string unnamed = "<c:ser><c:val/></c:ser>";
  const std::string automatic = "<c:title><c:layout/><c:txPr><a:p/></c:txPr></c:title>";
  const std::string deleted = "<c:autoTitleDeleted val=\"1\"/>";
  const std::string rich =
      "<c:title><c:tx><c:rich><a:bodyPr/><a:p><a:pPr/><a:r><a:rPr/><a:t>Cash </a:t></a:r><a:r><a:t>"
      "flow</a:t></a:r></a:p><a:p><a:r><a:t>2026</a:t></a:r></a:p></c:rich></c:tx></c:title>";
  const struct {
    std::string chart;
    const char* title;
  } cases[] = {
      {rich + Plot(named), "Cash flow\n2026"},
      {rich + deleted + Plot(named), "Cash flow\n2026"},
      {"<c:title>" + linked + "</c:title>" + Plot(literal), "=Data!$B$8 Sales & more"},
      {Plot(named), "=Data!$B$8 Sales & more"},
      {"<c:autoTitleDeleted val=\"0\"/>" + Plot(literal), "Costs"},
      {deleted + Plot(named), "none"},
      {"<c:autoTitleDeleted/>" + Plot(named), "none"},
      {Plot(named + literal), "none"},
      {Plot(unnamed), "none"},
      {automatic + Plot(literal), "Costs"},
      {automatic + Plot(named + literal), "Chart Title"},
      {automatic + Plot(unnamed), "Chart Title"},
      // The newer kind.
      {"<c:title><c:tx><c:txData><c:f>Data!$A$1</c:f><c:v>Bridge</c:v></c:txData></c:tx></c:title>"
       "<c:plotArea/>",
       "=Data!$A$1 Bridge"},
      {"<c:title "
       "pos=\"t\"/><c:plotArea><c:plotAreaRegion><c:series><c:tx><c:txData><c:v>Steps</c:v>"
       "</c:txData></c:tx></c:series></c:plotAreaRegion></c:plotArea>",
       "Steps"},
  };
  for (const auto& one : cases) EXPECT_EQ(TitleOf(one.chart), one.title) << one.chart;
}

class SheetDrawingTest : public testing::Test {
 protected:
  SheetDrawingTest() : package_(OpcPackage::Create()) {
    constexpr std::string_view kType =
        "http://schemas.openxmlformats.org/officeDocument/2006/relationships/";
    package_->Write("xl/worksheets/sheet1.xml", "<worksheet/>");
    package_->AddRelationship("xl/worksheets/sheet1.xml", std::string(kType) + "drawing",
                              "xl/drawings/drawing1.xml");
    for (const char* part : {"xl/charts/chart1.xml", "xl/charts/chart2.xml"}) {
      package_->AddRelationship("xl/drawings/drawing1.xml", std::string(kType) + "chart", part);
    }
  }
  std::vector<SheetChart> Read(const std::string& anchors) {
    package_->Write("xl/drawings/drawing1.xml",
                    "<d:wsDr xmlns:d=\"d\" xmlns:r=\"r\" xmlns:c=\"c\" xmlns:mc=\"mc\">" + anchors +
                        "</d:wsDr>");
    return ReadSheetCharts(*package_, "xl/worksheets/sheet1.xml");
  }
  static std::string Frame(int chart) {
    return "<d:graphicFrame><d:nvGraphicFramePr><d:cNvPr id=\"2\" "
           "name=\"Chart\"/></d:nvGraphicFramePr>"
           "<a:graphic><a:graphicData><c:chart r:id=\"rId" +
           std::to_string(chart) +
           "\"/></a:graphicData></a:graphic></d:graphicFrame><d:clientData/>";
  }

  std::unique_ptr<OpcPackage> package_;
};

TEST_F(SheetDrawingTest, ChartsComeInTheDrawingsOrderWithoutThoseInGroups) {
  const std::string corner =
      "<d:absoluteAnchor><d:pos x=\"12700\" y=\"25400\"/><d:ext cx=\"635\" cy=\"1\"/>";
  auto charts =
      Read(corner + Frame(2) + "</d:absoluteAnchor>" + corner +
           "<d:sp/><d:clientData/></d:absoluteAnchor>" + corner + "<d:grpSp>" + Frame(1) +
           "</d:grpSp></d:absoluteAnchor>" + corner + "<mc:AlternateContent><mc:Choice>" +
           Frame(1) + "</mc:Choice><mc:Fallback><d:sp/></mc:Fallback></mc:AlternateContent>" +
           "<d:clientData/></d:absoluteAnchor>" + "<mc:AlternateContent><mc:Choice>" + corner +
           Frame(2) + "</d:absoluteAnchor></mc:Choice><mc:Fallback>" + corner + Frame(2) +
           "</d:absoluteAnchor></mc:Fallback></mc:AlternateContent>");
  ASSERT_EQ(charts.size(), 3u);
  EXPECT_EQ(charts[0].part, "xl/charts/chart2.xml");
  EXPECT_EQ(charts[1].part, "xl/charts/chart1.xml");
  EXPECT_EQ(charts[2].part, "xl/charts/chart2.xml");
  EXPECT_EQ(charts[0].anchor.left, 12700);
  EXPECT_EQ(charts[0].anchor.top, 25400);
  EXPECT_EQ(charts[0].anchor.width, 635);
}

TEST_F(SheetDrawingTest, ADamagedDrawingIsNamed) {
  try {
    Read("<d:twoCellAnchor>");
    FAIL() << "no error";
  } catch (const FileError& error) {
    EXPECT_NE(std::string(error.what()).find("drawing1.xml"), std::string::npos) << error.what();
  }
  package_->Write("xl/worksheets/sheet2.xml", "<worksheet/>");
  EXPECT_TRUE(ReadSheetCharts(*package_, "xl/worksheets/sheet2.xml").empty());
}

}  // namespace
}  // namespace vantora::embedded
