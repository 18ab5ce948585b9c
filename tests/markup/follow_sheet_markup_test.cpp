// What an inserted column does to the markup around the cells of a sheet.
#include <gtest/gtest.h>

#include "markup/markup_support.h"
#include "package/follow_markup.h"

namespace vantora::embedded {
namespace {

struct Case {
  const char* what;
  std::string before;
  std::vector<ColumnInsertion> insertions;
  std::string after;  // "" for no change
};

void PrintTo(const Case& test, std::ostream* out) { *out << test.what; }

class FollowInSheet : public testing::TestWithParam<Case> {};

TEST_P(FollowInSheet, ChangesOnlyWhatIsConcerned) {
  const Case& test = GetParam();
  SheetMarkup markup = MarkupOf({{"element", test.before}});
  bool changed = FollowInSheetMarkup(markup, kPlan, test.insertions, TwoSheets());
  EXPECT_EQ(TextOf(markup), test.after.empty() ? test.before : test.after);
  EXPECT_EQ(changed, !test.after.empty());
  EXPECT_EQ(markup.changed, changed);
}

const ColumnInsertion kAtK{kPlan, 11, 1};
const ColumnInsertion kTwoAtC{kPlan, 3, 2};
const ColumnInsertion kEquityAtK{kEquity, 11, 1};

INSTANTIATE_TEST_SUITE_P(
    Areas, FollowInSheet,
    testing::Values(
        Case{"merged cells move, grow or stay",
             R"(<mergeCells count="4"><mergeCell ref="B2:H2"/><mergeCell ref='J3:L3'/>)"
             R"(<mergeCell  ref="K4:M4" /><mergeCell ref="J1:K1"/></mergeCells>)",
             {kAtK},
             R"(<mergeCells count="4"><mergeCell ref="B2:H2"/><mergeCell ref='J3:M3'/>)"
             R"(<mergeCell  ref="L4:N4" /><mergeCell ref="J1:L1"/></mergeCells>)"},
        Case{"another sheet's columns",
             R"(<mergeCells count="1"><mergeCell ref="B2:Z2"/></mergeCells>)",
             {kEquityAtK},
             ""},
        Case{
            "insertions one after the other",
            R"(<protectedRanges><protectedRange sqref="A1 C1:J5  K2" name="x"/></protectedRanges>)",
            {kTwoAtC, kAtK},
            R"(<protectedRanges><protectedRange sqref="A1 E1:M5  N2" name="x"/>)"
            R"(</protectedRanges>)"},
        Case{"whole columns and rows, written with two corners",
             R"(<ignoredErrors><ignoredError sqref="J:L 4:5 K3:K3 XFD1" formula="1"/>)"
             R"(</ignoredErrors>)",
             {kAtK},
             R"(<ignoredErrors><ignoredError sqref="J:M 4:5 L3:L3 XFD1" formula="1"/>)"
             R"(</ignoredErrors>)"},
        Case{"autofilter with a filtered column",
             R"(<autoFilter ref="J3:N60"><filterColumn colId="0"><filters/></filterColumn>)"
             R"(<filterColumn colId="2"/><sortState ref="J4:N60"><sortCondition ref="L4:L60"/>)"
             R"(</sortState></autoFilter>)",
             {kAtK},
             R"(<autoFilter ref="J3:O60"><filterColumn colId="0"><filters/></filterColumn>)"
             R"(<filterColumn colId="3"/><sortState ref="J4:O60"><sortCondition ref="M4:M60"/>)"
             R"(</sortState></autoFilter>)"},
        Case{"autofilter right of the column keeps its numbers",
             R"(<autoFilter ref="K3:N60"><filterColumn colId="2"/></autoFilter>)",
             {kTwoAtC},
             R"(<autoFilter ref="M3:P60"><filterColumn colId="2"/></autoFilter>)"},
        Case{"column breaks; row breaks stay",
             R"(<colBreaks count="2"><brk id="9" max="1048575" man="1"/>)"
             R"(<brk id="10" max="1048575"/>)"
             R"(</colBreaks><!-- -->)",
             {kAtK},
             R"(<colBreaks count="2"><brk id="9" max="1048575" man="1"/>)"
             R"(<brk id="11" max="1048575"/>)"
             R"(</colBreaks><!-- -->)"},
        Case{"row breaks",
             R"(<rowBreaks><brk id="40" min="2" max="16383"/></rowBreaks>)",
             {kAtK},
             ""},
        Case{"scenarios and watches",
             R"(<scenarios sqref="L1"><scenario name="s"><inputCells r="K4" val="1"/></scenario>)"
             R"(</scenarios>)",
             {kAtK},
             R"(<scenarios sqref="M1"><scenario name="s"><inputCells r="L4" val="1"/></scenario>)"
             R"(</scenarios>)"},
        Case{"sources of a consolidation lie on the sheets they name",
             R"(<dataConsolidate><dataRefs><dataRef ref="K1" sheet="Plan"/>)"
             R"(<dataRef ref="K1" sheet="Owner's Equity"/>)"
             R"(<dataRef ref="K1" sheet="Plan" r:id="rId9"/>)"
             R"(</dataRefs></dataConsolidate>)",
             {kAtK},
             R"(<dataConsolidate><dataRefs><dataRef ref="L1" sheet="Plan"/>)"
             R"(<dataRef ref="K1" sheet="Owner's Equity"/>)"
             R"(<dataRef ref="K1" sheet="Plan" r:id="rId9"/>)"
             R"(</dataRefs></dataConsolidate>)"},
        Case{"selection, split and scroll position keep their addresses",
             R"(<sheetViews><sheetView topLeftCell="K1"><pane xSplit="14" topLeftCell="O1"/>)"
             R"(<selection activeCell="M4" sqref="M4:N9"/></sheetView></sheetViews>)",
             {kAtK},
             ""},
        Case{
            "custom views: filter and breaks",
            R"(<customSheetViews><customSheetView><selection sqref="M1"/><colBreaks><brk id="20"/>)"
            R"(</colBreaks><autoFilter ref="K1:L4"/></customSheetView></customSheetViews>)",
            {kAtK},
            R"(<customSheetViews><customSheetView><selection sqref="M1"/><colBreaks><brk id="21"/>)"
            R"(</colBreaks><autoFilter ref="L1:M4"/></customSheetView></customSheetViews>)"}));

INSTANTIATE_TEST_SUITE_P(
    Formulas, FollowInSheet,
    testing::Values(
        Case{"conditional format: area and formula",
             R"(<conditionalFormatting sqref="L5:L56"><cfRule type="expression" dxfId="1">)"
             R"(<formula>AND(L5&gt;K5,$G5&gt;0,J5&lt;"L5")</formula></cfRule>)"
             R"(</conditionalFormatting>)",
             {kAtK},
             R"(<conditionalFormatting sqref="M5:M56"><cfRule type="expression" dxfId="1">)"
             R"(<formula>AND(M5&gt;L5,$G5&gt;0,J5&lt;"L5")</formula></cfRule>)"
             R"(</conditionalFormatting>)"},
        Case{"the reference left of the inserted column stays",
             R"(<conditionalFormatting sqref="K5:K56"><cfRule><formula>K5&gt;J5</formula></cfRule>)"
             R"(</conditionalFormatting>)",
             {kAtK},
             R"(<conditionalFormatting sqref="L5:L56"><cfRule><formula>L5&gt;J5</formula></cfRule>)"
             R"(</conditionalFormatting>)"},
        Case{
            "limits of scales and icons",
            R"(<conditionalFormatting sqref="A1"><cfRule><colorScale><cfvo type="num" val="$K$1"/>)"
            R"(<cfvo type="formula" val='IF($L$1&gt;"a",1,2)'/><cfvo type="percent" val="11"/>)"
            R"(</colorScale></cfRule></conditionalFormatting>)",
            {kAtK},
            R"(<conditionalFormatting sqref="A1"><cfRule><colorScale><cfvo type="num" val="$L$1"/>)"
            R"(<cfvo type="formula" val='IF($M$1&gt;&quot;a&quot;,1,2)'/>)"
            R"(<cfvo type="percent" val="11"/></colorScale></cfRule></conditionalFormatting>)"},
        Case{"validations refer to other sheets",
             R"(<dataValidations count="2"><dataValidation type="list" sqref="E5:E56">)"
             R"(<formula1>'Owner''s Equity'!$K$14:$K$25</formula1></dataValidation>)"
             R"(<dataValidation sqref="K5"><formula1>-1</formula1><formula2>K9</formula2>)"
             R"(</dataValidation></dataValidations>)",
             {kEquityAtK},
             R"(<dataValidations count="2"><dataValidation type="list" sqref="E5:E56">)"
             R"(<formula1>'Owner''s Equity'!$L$14:$L$25</formula1></dataValidation>)"
             R"(<dataValidation sqref="K5"><formula1>-1</formula1><formula2>K9</formula2>)"
             R"(</dataValidation></dataValidations>)"},
        Case{"extension lists: formats, validations, sparklines",
             "<extLst><ext><x14:conditionalFormattings><x14:conditionalFormatting><x14:cfRule>\n "
             "<xm:f>$K$1</xm:f></x14:cfRule><xm:sqref>K5:K9 "
             "M1</xm:sqref></x14:conditionalFormatting>"
             "</x14:conditionalFormattings></ext><ext><x14:dataValidations count=\"1\">"
             "<x14:dataValidation><x14:formula1>\n<xm:f>Plan!K1</xm:f></x14:formula1>"
             "<xm:sqref>J4:L4</xm:sqref></x14:dataValidation></x14:dataValidations></ext>"
             "<ext><x14:sparkline><xm:f>Plan!J8:Y8</xm:f><xm:sqref>A3</xm:sqref></x14:sparkline>"
             "</ext></extLst>",
             {kAtK},
             "<extLst><ext><x14:conditionalFormattings><x14:conditionalFormatting><x14:cfRule>\n "
             "<xm:f>$L$1</xm:f></x14:cfRule><xm:sqref>L5:L9 "
             "N1</xm:sqref></x14:conditionalFormatting>"
             "</x14:conditionalFormattings></ext><ext><x14:dataValidations count=\"1\">"
             "<x14:dataValidation><x14:formula1>\n<xm:f>Plan!L1</xm:f></x14:formula1>"
             "<xm:sqref>J4:M4</xm:sqref></x14:dataValidation></x14:dataValidations></ext>"
             "<ext><x14:sparkline><xm:f>Plan!J8:Z8</xm:f><xm:sqref>A3</xm:sqref></x14:sparkline>"
             "</ext></extLst>"},
        // Where a link leads is a text like any other, as in Excel.
        Case{"hyperlinks: places",
             R"(<hyperlinks><hyperlink ref="L9" location="'Plan'!$K$1:M2" display="K1"/>)"
             R"(<hyperlink ref="A4" r:id="rId1"/></hyperlinks>)",
             {kAtK},
             R"(<hyperlinks><hyperlink ref="M9" location="'Plan'!$K$1:M2" display="K1"/>)"
             R"(<hyperlink ref="A4" r:id="rId1"/></hyperlinks>)"}));

std::string ControlAnchor(const std::string& flags, int from, int to, int to_offset) {
  return "<controls><mc:AlternateContent><mc:Choice Requires=\"x14\"><control name=\"Spinner 1\">"
         "<controlPr linkedCell=\"$A$1\"><anchor" +
         flags + "><from><xdr:col>" + std::to_string(from) +
         "</xdr:col><xdr:colOff>9525</xdr:colOff><xdr:row>7</xdr:row></from><to><xdr:col>" +
         std::to_string(to) + "</xdr:col><xdr:colOff>" + std::to_string(to_offset) +
         "</xdr:colOff><xdr:row>8</xdr:row></to></anchor></controlPr></control></mc:Choice>"
         "</mc:AlternateContent></controls>";
}

const std::string kMoves = R"( moveWithCells="1")";
const std::string kMovesAndSizes = R"( moveWithCells="1" sizeWithCells="true")";

INSTANTIATE_TEST_SUITE_P(
    Anchors, FollowInSheet,
    testing::Values(Case{"a control that moves",
                         ControlAnchor(kMoves, 10, 11, 5),
                         {kAtK},
                         ControlAnchor(kMoves, 11, 12, 5)},
                    Case{"one that only moves keeps its width over the column",
                         ControlAnchor(kMoves, 9, 12, 5),
                         {kAtK},
                         ""},
                    Case{"one that is sized grows",
                         ControlAnchor(kMovesAndSizes, 9, 10, 5),
                         {kAtK},
                         ControlAnchor(kMovesAndSizes, 9, 11, 5)},
                    Case{"one that ends at the column's border does not",
                         ControlAnchor(kMovesAndSizes, 9, 10, 0),
                         {kAtK},
                         ""},
                    Case{"one that is fixed stays", ControlAnchor("", 12, 13, 5), {kAtK}, ""}));

}  // namespace
}  // namespace vantora::embedded
