// Charts on a sheet as a macro sees them.
#include <gtest/gtest.h>

#include "host/session.h"

namespace vantora::embedded {
namespace {

constexpr std::string_view kType =
    "http://schemas.openxmlformats.org/officeDocument/2006/relationships/";

class ChartsTest : public testing::Test {
 protected:
  ChartsTest() : session_(Session::Create({"Dashboard", "Data"})) {}

  // Puts one chart with that place and title on the dashboard.
  void SetChart(const std::string& anchor, const std::string& place, const std::string& title) {
    OpcPackage& package = session_->file().package();
    const std::string drawing = "xl/drawings/drawing1.xml";
    if (!package.Has(drawing)) {
      package.AddRelationship(session_->file().part_of(0), std::string(kType) + "drawing", drawing);
      package.AddRelationship(drawing, std::string(kType) + "chart", "xl/charts/chart1.xml");
    }
    package.Write("xl/charts/chart1.xml", "<c:chartSpace xmlns:c=\"c\" xmlns:a=\"a\"><c:chart>" +
                                              title + "<c:plotArea/></c:chart></c:chartSpace>");
    package.Write(drawing, "<d:wsDr xmlns:d=\"d\" xmlns:r=\"r\" xmlns:c=\"c\"><d:" + anchor + ">" +
                               place +
                               "<d:graphicFrame><a:graphic><a:graphicData><c:chart r:id=\"rId1\"/>"
                               "</a:graphicData></a:graphic></d:graphicFrame></d:" +
                               anchor + "></d:wsDr>");
  }
  static std::string Place(const char* name, int column, int offset, int row, int row_offset) {
    return "<d:" + std::string(name) + "><d:col>" + std::to_string(column) + "</d:col><d:colOff>" +
           std::to_string(offset) + "</d:colOff><d:row>" + std::to_string(row) +
           "</d:row><d:rowOff>" + std::to_string(row_offset) + "</d:rowOff></d:" + name + ">";
  }
  static std::string Linked(const std::string& formula) {
    return "<c:title><c:tx><c:strRef><c:f>" + formula +
           "</c:f><c:strCache><c:pt idx=\"0\"><c:v>as "
           "saved</c:v></c:pt></c:strCache></c:strRef></c:tx>"
           "</c:title>";
  }
  host::ChartObjectPtr Chart() {
    auto charts = session_->Worksheet("Dashboard")->ChartObjects();
    return charts.size() == 1 ? charts.front() : nullptr;
  }
  void ExpectPlace(double left, double top, double width) {
    auto chart = Chart();
    ASSERT_TRUE(chart);
    EXPECT_DOUBLE_EQ(chart->Left(), left);
    EXPECT_DOUBLE_EQ(chart->Top(), top);
    EXPECT_DOUBLE_EQ(chart->Width(), width);
  }

  std::unique_ptr<Session> session_;
};

TEST_F(ChartsTest, PlacesFollowTheSizesOfColumnsAndRows) {
  auto sheet = session_->Worksheet("Dashboard");
  SetChart("twoCellAnchor", Place("from", 1, 127000, 2, 63500) + Place("to", 3, 254000, 9, 0), "");
  ExpectPlace(58, 35, 106);
  sheet->Columns(1)->SetColumnWidth(20);  // 145 pixels
  sheet->Cells(2, 1)->SetRowHeight(30);
  ExpectPlace(118.75, 50, 106);
  // A chart that is sized with the cells loses what is hidden.
  sheet->Columns(3)->SetColumnsHidden(true);
  ExpectPlace(118.75, 50, 58);
  sheet->Columns(2)->SetColumnsHidden(true);
  sheet->Cells(1, 1)->SetRowsHidden(true);
  ExpectPlace(108.75, 35, 20);

  // The others keep their size.
  SetChart("oneCellAnchor", Place("from", 3, 0, 1, 0) + "<d:ext cx=\"635000\" cy=\"1\"/>", "");
  ExpectPlace(108.75, 0, 50);
  SetChart("absoluteAnchor", "<d:pos x=\"12700\" y=\"6350\"/><d:ext cx=\"635000\" cy=\"1\"/>", "");
  ExpectPlace(1, 0.5, 50);
}

TEST_F(ChartsTest, PlacesAndLinkedTitlesFollowInsertedColumns) {
  session_->Range("Dashboard!B5")->SetValue(Value("Cash"));
  SetChart("twoCellAnchor", Place("from", 1, 0, 1, 0) + Place("to", 2, 0, 9, 0),
           Linked("Dashboard!$B$5"));
  EXPECT_EQ(Chart()->TitleCaption(), "Cash");
  session_->Worksheet("Dashboard")->Columns(2)->Insert(host::XlInsertShiftDirection::kToRight);
  ExpectPlace(96, 15, 48);
  session_->Range("Dashboard!C5")->SetValue(Value("Net cash"));
  EXPECT_EQ(Chart()->TitleCaption(), "Net cash");
}

TEST_F(ChartsTest, ALinkedTitleIsWhatItsCellsHoldNow) {
  session_->Range("Data!A1")->SetValue(Value("Revenue"));
  session_->Range("Data!A2")->SetValue(Value("=\"of \"&2026"));
  const struct {
    const char* formula;
    const char* caption;
  } cases[] = {
      {"Data!$A$1", "Revenue"},
      {"Data!$A$1:$A$2", "Revenue of 2026"},
      {"[1]Other!$A$1", "as saved"},
      {"Data!$C$9", ""},
  };
  for (const auto& one : cases) {
    SetChart("oneCellAnchor", Place("from", 0, 0, 0, 0), Linked(one.formula));
    EXPECT_EQ(Chart()->TitleCaption(), one.caption) << one.formula;
  }
  session_->Range("Data!A2")->SetValue(Value("=CUBEVALUE(1)"));
  SetChart("oneCellAnchor", Place("from", 0, 0, 0, 0), Linked("Data!$A$2"));
  EXPECT_EQ(Chart()->TitleCaption(), "as saved");
}

TEST_F(ChartsTest, AChartWithoutATitleSaysSo) {
  SetChart("oneCellAnchor", Place("from", 0, 0, 0, 0), "");
  try {
    Chart()->TitleCaption();
    FAIL() << "no error";
  } catch (const HostError& error) {
    EXPECT_EQ(error.number(), HostError::kApplicationDefined);
  }
  EXPECT_TRUE(session_->Worksheet("Data")->ChartObjects().empty());
}

}  // namespace
}  // namespace vantora::embedded
