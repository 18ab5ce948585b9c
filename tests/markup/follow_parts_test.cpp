// What an inserted column does to drawings, comments, charts, tables, controls and pivot tables.
#include <gtest/gtest.h>

#include "markup/markup_support.h"
#include "package/follow_markup.h"

namespace vantora::embedded {
namespace {

using Followed = std::optional<std::string>;
using Insertions = std::vector<ColumnInsertion>;

const Insertions kAtK{{kPlan, 11, 1}};

struct Case {
  const char* what;
  std::string before;
  Followed after;
};

std::string Anchor(const std::string& edit_as, int from, int to, int offset) {
  return "<xdr:wsDr><mc:AlternateContent><mc:Choice><xdr:twoCellAnchor" + edit_as +
         "><xdr:from><xdr:col>" + std::to_string(from) +
         "</xdr:col><xdr:colOff>0</xdr:colOff><xdr:row>3</xdr:row></xdr:from><xdr:to><xdr:col>" +
         std::to_string(to) + "</xdr:col><xdr:colOff>" + std::to_string(offset) +
         "</xdr:colOff></xdr:to><xdr:sp macro=\"\" textlink=\"\"/></xdr:twoCellAnchor></mc:Choice>"
         "</mc:AlternateContent></xdr:wsDr>";
}

TEST(FollowInDrawing, MovesAnchorsAsTheyAreAttached) {
  const std::string one_cell = R"( editAs="oneCell")";
  const std::string absolute = R"( editAs="absolute")";
  const Case cases[] = {
      {"left of the column", Anchor("", 1, 9, 99), std::nullopt},
      {"right of it", Anchor("", 10, 12, 0), Anchor("", 11, 13, 0)},
      {"across it", Anchor("", 8, 12, 0), Anchor("", 8, 13, 0)},
      {"ends in it", Anchor("", 8, 10, 1), Anchor("", 8, 11, 1)},
      {"ends at its left border", Anchor("", 8, 10, 0), std::nullopt},
      {"moves only", Anchor(one_cell, 11, 12, 0), Anchor(one_cell, 12, 13, 0)},
      {"keeps its size", Anchor(one_cell, 8, 12, 0), std::nullopt},
      {"fixed", Anchor(absolute, 12, 13, 0), std::nullopt},
      {"one cell",
       "<wsDr><oneCellAnchor><from><col>10</col></from><ext cx=\"1\"/></oneCellAnchor></wsDr>",
       "<wsDr><oneCellAnchor><from><col>11</col></from><ext cx=\"1\"/></oneCellAnchor></wsDr>"},
      {"linked text",
       "<wsDr><absoluteAnchor><sp textlink=\"Plan!$K$2\"/><sp textlink=\"$K$2\"/></absoluteAnchor>"
       "</wsDr>",
       "<wsDr><absoluteAnchor><sp textlink=\"Plan!$L$2\"/><sp textlink=\"$L$2\"/></absoluteAnchor>"
       "</wsDr>"},
  };
  for (const Case& test : cases) {
    EXPECT_EQ(FollowInDrawing(test.before, kPlan, kAtK, TwoSheets()), test.after) << test.what;
  }
}

std::string Shape(const std::string& type, const std::string& content) {
  return "<xml xmlns:v=\"urn:v\"><v:shape "
         "style='margin-left:7pt'><v:textbox><div><br>a<font>b</div>"
         "</v:textbox><x:ClientData ObjectType=\"" +
         type + "\">" + content + "</x:ClientData></v:shape></xml>";
}

TEST(FollowInVmlDrawing, MovesNotesAndControls) {
  const Case cases[] = {
      // The elements say that the object keeps its place and its size.
      {"note, its box fixed",
       Shape("Note",
             "<x:MoveWithCells/><x:SizeWithCells/><x:Anchor>\n 11, 15, 6, 10, 13, 15, 10, 4"
             "</x:Anchor><x:Row>7</x:Row><x:Column>10</x:Column>"),
       Shape("Note",
             "<x:MoveWithCells/><x:SizeWithCells/><x:Anchor>\n 11, 15, 6, 10, 13, 15, 10, 4"
             "</x:Anchor><x:Row>7</x:Row><x:Column>11</x:Column>")},
      {"note that moves",
       Shape("Note",
             "<x:MoveWithCells>False</x:MoveWithCells><x:SizeWithCells/>"
             "<x:Anchor>11, 15, 6, 10, 13, 15, 10, 4</x:Anchor><x:Column>9</x:Column>"),
       Shape("Note",
             "<x:MoveWithCells>False</x:MoveWithCells><x:SizeWithCells/>"
             "<x:Anchor>12, 15, 6, 10, 14, 15, 10, 4</x:Anchor><x:Column>9</x:Column>")},
      {"spinner over the column keeps its width",
       Shape("Spin",
             "<x:SizeWithCells/><x:Anchor>9, 10, 7, 0, 11, 36, 8, 18</x:Anchor>"
             "<x:FmlaMacro>[0]!VA_Spinner</x:FmlaMacro><x:FmlaLink>\n  $K$8</x:FmlaLink>"),
       Shape("Spin",
             "<x:SizeWithCells/><x:Anchor>9, 10, 7, 0, 11, 36, 8, 18</x:Anchor>"
             "<x:FmlaMacro>[0]!VA_Spinner</x:FmlaMacro><x:FmlaLink>\n  $L$8</x:FmlaLink>")},
      {"button that grows; a list",
       Shape("Drop",
             "<x:Anchor>9, 0, 7, 0, 11, 0, 8, 18</x:Anchor><x:FmlaRange>Plan!$J$1:$K$4"
             "</x:FmlaRange><x:Column>12</x:Column>"),
       Shape("Drop",
             "<x:Anchor>9, 0, 7, 0, 12, 0, 8, 18</x:Anchor><x:FmlaRange>Plan!$J$1:$L$4"
             "</x:FmlaRange><x:Column>12</x:Column>")},
      {"left of it", Shape("Note", "<x:Anchor>1, 0, 7, 0, 3, 0, 8, 18</x:Anchor>"), std::nullopt},
  };
  for (const Case& test : cases) {
    EXPECT_EQ(FollowInVmlDrawing(test.before, kPlan, kAtK, TwoSheets()), test.after) << test.what;
  }
}

TEST(FollowInComments, MovesCellsAndBoxes) {
  EXPECT_EQ(FollowInComments("<comments><commentList><comment ref=\"K6\" authorId=\"0\"><text/>"
                             "<commentPr><anchor moveWithCells=\"1\"><from><col>11</col></from>"
                             "<to><col>13</col></to></anchor></commentPr></comment>"
                             "<comment ref=\"B8\"/></commentList></comments>",
                             kPlan, kAtK),
            "<comments><commentList><comment ref=\"L6\" authorId=\"0\"><text/>"
            "<commentPr><anchor moveWithCells=\"1\"><from><col>12</col></from>"
            "<to><col>14</col></to></anchor></commentPr></comment>"
            "<comment ref=\"B8\"/></commentList></comments>");
  EXPECT_EQ(
      FollowInComments("<ThreadedComments><threadedComment ref=\"M2\" id=\"{1}\"><text>M2</text>"
                       "</threadedComment></ThreadedComments>",
                       kPlan, kAtK),
      "<ThreadedComments><threadedComment ref=\"N2\" id=\"{1}\"><text>M2</text>"
      "</threadedComment></ThreadedComments>");
  EXPECT_EQ(FollowInComments("<comments><comment ref=\"K6\"/></comments>", kEquity, kAtK),
            std::nullopt);
}

TEST(FollowInChart, FollowsEveryFormulaAndKeepsCaches) {
  EXPECT_EQ(FollowInChart(
                "<c:chart><c:tx><c:f>Plan!$K$8</c:f><c:strCache><c:v>Plan!$K$8</c:v></c:strCache>"
                "</c:tx><c:f>'Owner''s Equity'!$J$8:$Y$8</c:f><c:f>(Plan!$A$1,Plan!$L$1)</c:f>"
                "<c15:sqref>Plan!$J$1:$K$1</c15:sqref><cx:f dir=\"row\">Plan!$Z$1</cx:f></c:chart>",
                kAtK, TwoSheets()),
            "<c:chart><c:tx><c:f>Plan!$L$8</c:f><c:strCache><c:v>Plan!$K$8</c:v></c:strCache>"
            "</c:tx><c:f>'Owner''s Equity'!$J$8:$Y$8</c:f><c:f>(Plan!$A$1,Plan!$M$1)</c:f>"
            "<c15:sqref>Plan!$J$1:$L$1</c15:sqref><cx:f dir=\"row\">Plan!$AA$1</cx:f></c:chart>");
}

TEST(FollowInControlProperties, FollowsLinks) {
  EXPECT_EQ(
      FollowInControlProperties(
          R"(<formControlPr objectType="Spin" fmlaLink="$K$8" fmlaRange="Plan!$K$1:$K$3")"
          R"( val="0"/>)",
          kPlan, kAtK, TwoSheets()),
      R"(<formControlPr objectType="Spin" fmlaLink="$L$8" fmlaRange="Plan!$L$1:$L$3" val="0"/>)");
}

std::string Table(const std::string& ref, const std::string& columns) {
  return R"(<table xmlns="m" id="4" name="Table4" ref=")" + ref + R"(" totalsRowShown="0">)" +
         R"(<autoFilter ref=")" + ref + R"("><filterColumn colId="1"/></autoFilter>)" + columns +
         R"(<tableStyleInfo name="TableStyleMedium9"/></table>)";
}

const std::string kTwoColumns =
    R"(<tableColumns count="2"><tableColumn id="1" name="column1"/><tableColumn id="7" name="Sum">)"
    R"(<calculatedColumnFormula>K5+$M$1</calculatedColumnFormula></tableColumn></tableColumns>)";

TEST(FollowInTable, MovesAsAWhole) {
  std::vector<TableHeader> headers;
  std::string moved = kTwoColumns;
  moved.replace(moved.find("K5+$M$1"), 7, "L5+$N$1");
  EXPECT_EQ(FollowInTable(Table("K4:L11", kTwoColumns), kPlan, kAtK, TwoSheets(), &headers),
            Table("L4:M11", moved));
  EXPECT_TRUE(headers.empty());
}

TEST(FollowInTable, TakesUpColumnsInsertedWithin) {
  std::vector<TableHeader> headers;
  std::string expected = Table(
      "J4:M11",
      R"(<tableColumns count="4"><tableColumn id="1" name="column1"/>)"
      R"(<tableColumn id="8" name="Column2"/><tableColumn id="9" name="Column3"/>)"
      R"(<tableColumn id="7" name="Sum"><calculatedColumnFormula>M5+$O$1</calculatedColumnFormula>)"
      R"(</tableColumn></tableColumns>)");
  expected.replace(expected.find("colId=\"1\""), 9, "colId=\"3\"");
  EXPECT_EQ(FollowInTable(Table("J4:K11", kTwoColumns), kPlan, Insertions{{kPlan, 11, 2}},
                          TwoSheets(), &headers),
            expected);
  ASSERT_EQ(headers.size(), 2u);
  EXPECT_EQ(headers[0].cell, (CellAddress{4, 11}));
  EXPECT_EQ(headers[0].text, "Column2");
  EXPECT_EQ(headers[1].cell, (CellAddress{4, 12}));
}

TEST(FollowInPivot, FollowsSourcesAndLocations) {
  EXPECT_EQ(FollowInPivot(R"(<d><worksheetSource ref="A1:N13" sheet="Plan"/>)"
                          R"(<worksheetSource ref="A1:N13" sheet="Plan" r:id="rId1"/></d>)",
                          -1, kAtK, TwoSheets()),
            R"(<d><worksheetSource ref="A1:O13" sheet="Plan"/>)"
            R"(<worksheetSource ref="A1:N13" sheet="Plan" r:id="rId1"/></d>)");
  EXPECT_EQ(FollowInPivot(R"(<d><location ref="L3:M9"/></d>)", kPlan, kAtK, TwoSheets()),
            R"(<d><location ref="M3:N9"/></d>)");
  EXPECT_EQ(FollowInPivot(R"(<d><location ref="J3:M9"/></d>)", kPlan, kAtK, TwoSheets()),
            std::nullopt);
}

}  // namespace
}  // namespace vantora::embedded
