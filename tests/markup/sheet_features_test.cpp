// What clearing and pasting do to conditional formats, validations, merged cells and hyperlinks.
#include "package/sheet_features.h"

#include <gtest/gtest.h>

#include "markup/markup_support.h"

namespace vantora::embedded {
namespace {

constexpr unsigned kAll = kConditionalFormats | kValidations | kMergedCells | kHyperlinks;

std::string Format(const std::string& sqref, const std::string& formula) {
  return "<conditionalFormatting sqref=\"" + sqref + "\"><cfRule priority=\"1\"><formula>" +
         formula + "</formula></cfRule></conditionalFormatting>";
}

struct Case {
  const char* what;
  MarkupElement before;
  std::optional<Area> from;  // none: cleared
  Area to;
  std::string after;
};

void PrintTo(const Case& test, std::ostream* out) { *out << test.what; }

class EditFeatures : public testing::TestWithParam<Case> {};

TEST_P(EditFeatures, GivesTheElement) {
  const Case& test = GetParam();
  SheetMarkup markup =
      MarkupOf({{"sheetData", ""}, test.before, {"pageMargins", "<pageMargins/>"}});
  if (test.from) {
    PasteFeatures(markup, *test.from, test.to, kAll);
  } else {
    ClearFeatures(markup, test.to, kAll);
  }
  EXPECT_EQ(TextOf(markup), test.after + "<pageMargins/>");
  EXPECT_EQ(markup.changed, test.after != test.before.text);
  EXPECT_EQ(markup.elements.size(), test.after.empty() ? 2u : 3u);
}

const Area kJ = WholeColumns(10, 10);
const Area kK = WholeColumns(11, 11);
const Area kL = WholeColumns(12, 12);
constexpr auto kNone = std::nullopt;

MarkupElement Formats(const std::string& sqref, const std::string& formula) {
  return {"conditionalFormatting", Format(sqref, formula)};
}

INSTANTIATE_TEST_SUITE_P(
    ConditionalFormats, EditFeatures,
    testing::Values(
        Case{"a column cut out leaves two rectangles", Formats("J5:Y200", "J5&lt;0"), kNone, kK,
             Format("J5:J200 L5:Y200", "J5&lt;0")},
        Case{"cells cut out of the middle",
             Formats("J5:L9", "J5&lt;0"),
             kNone,
             {6, 11, 7, 11},
             Format("J5:J9 K5 L5:L9 K8:K9", "J5&lt;0")},
        Case{"the rule goes with its last cell", Formats("K5:K56 K60", "K5&gt;0"), kNone, kK, ""},
        Case{"nothing there", Formats("L5:L56", "L5&gt;0"), kNone, kK, Format("L5:L56", "L5&gt;0")},
        Case{"the formula is written for the new first cell",
             Formats("K5:M9", "AND(K5&gt;J5,$G5&gt;0,K$1=\"K5\")"), kNone, kK,
             Format("L5:M9", "AND(L5&gt;K5,$G5&gt;0,L$1=\"K5\")")},
        Case{"a paste beside the area extends it to the left",
             Formats("K5:K56", "AND(K5&gt;J5,'Owner''s Equity'!K5&gt;$G5)"), kK, kJ,
             Format("J5:K56", "AND(J5&gt;I5,'Owner''s Equity'!J5&gt;$G5)")},
        Case{"a paste to the right", Formats("K5:K56 M1", "K1&gt;0"), kK, kL,
             Format("M1 K5:L56", "K1&gt;0")},
        Case{"a paste within one rule changes nothing", Formats("J5:Y56", "J5&lt;0"), kK, kL,
             Format("J5:Y56", "J5&lt;0")},
        Case{"a paste of a column without the rule cuts it out", Formats("K5:M56", "K5&lt;0"), kJ,
             kL, Format("K5:K56 M5:M56", "K5&lt;0")},
        Case{"cells pasted to another row", Formats("B2:C2", "B1&gt;$A2"), Area{2, 2, 2, 3},
             Area{9, 2, 9, 3}, Format("B2:C2 B9:C9", "B1&gt;$A2")},
        Case{"relative references wrap around at the edge", Formats("C1", "A1&gt;0"),
             Area{1, 3, 1, 3}, Area{1, 1, 1, 1}, Format("A1 C1", "XFC1&gt;0")}));

const std::string kE5 =
    R"(<dataValidation type="list" sqref="E5:E56"><formula1>$A$1</formula1></dataValidation>)";

std::string Validation(const std::string& sqref, const std::string& formula) {
  return R"(<dataValidation type="custom" sqref=")" + sqref + "\"><formula1>" + formula +
         "</formula1></dataValidation>";
}

std::string Validations(int count, const std::string& items) {
  return "\n<dataValidations count=\"" + std::to_string(count) + "\">" + items +
         "</dataValidations>";
}

INSTANTIATE_TEST_SUITE_P(
    Lists, EditFeatures,
    testing::Values(
        Case{"a validation goes, the other stays",
             {"dataValidations", Validations(2, kE5 + Validation("K5:K56", "K5&gt;0"))},
             kNone,
             kK,
             Validations(1, kE5)},
        Case{"the last one",
             {"dataValidations", Validations(1, Validation("K5", "K5&gt;0"))},
             kNone,
             kK,
             ""},
        Case{"a paste replaces what stood there and extends its own",
             {"dataValidations",
              Validations(3, kE5 + Validation("K5:K56", "K5&gt;J5") + Validation("J5", "J9"))},
             kK,
             kJ,
             Validations(2, kE5 + Validation("J5:K56", "J5&gt;I5"))},
        Case{"merged cells wholly inside",
             {"mergeCells",
              R"(<mergeCells count="3"><mergeCell ref="K2:K3"/><mergeCell ref="B4:M4"/>)"
              R"(<mergeCell ref="J7:J8"/></mergeCells>)"},
             kK,
             kJ,
             R"(<mergeCells count="3"><mergeCell ref="K2:K3"/><mergeCell ref="B4:M4"/>)"
             R"(<mergeCell ref="J2:J3"/></mergeCells>)"},
        Case{"the last merged cells",
             {"mergeCells", R"(<mergeCells count="1"><mergeCell ref="K2:K3"/></mergeCells>)"},
             kNone,
             kK,
             ""},
        Case{"hyperlinks are copied without their identifier",
             {"hyperlinks",
              R"(<hyperlinks><hyperlink ref="K4" r:id="rId2" xr:uid="{0-1}"/><hyperlink ref="J9"/>)"
              R"(</hyperlinks>)"},
             kK,
             Area{1, 13, kMaxRow, 13},
             R"(<hyperlinks><hyperlink ref="K4" r:id="rId2" xr:uid="{0-1}"/>)"
             R"(<hyperlink ref="M4" r:id="rId2"/><hyperlink ref="J9"/></hyperlinks>)"},
        Case{"the last hyperlink",
             {"hyperlinks", R"(<hyperlinks><hyperlink ref="K4"/></hyperlinks>)"},
             kNone,
             kK,
             ""}));

const std::string kBars =
    "<ext uri=\"{78}\"><x14:conditionalFormattings><x14:conditionalFormatting><x14:cfRule><xm:f>K5"
    "</xm:f></x14:cfRule><xm:sqref>K5:K56</xm:sqref></x14:conditionalFormatting>"
    "</x14:conditionalFormattings></ext>";
const std::string kOther = "<ext uri=\"{05}\"><x14:sparklineGroups/></ext>";

INSTANTIATE_TEST_SUITE_P(
    Extensions, EditFeatures,
    testing::Values(
        Case{"an extension left without cells goes",
             {"extLst", "<extLst>" + kBars + kOther + "</extLst>"},
             kNone,
             kK,
             "<extLst>" + kOther + "</extLst>"},
        Case{"the list too", {"extLst", "<extLst>" + kBars + "</extLst>"}, kNone, kK, ""},
        Case{"a paste extends",
             {"extLst",
              "<extLst><ext><x14:dataValidations count=\"1\"><x14:dataValidation><x14:formula1>"
              "<xm:f>K1</xm:f></x14:formula1><xm:sqref>K5:K56</xm:sqref></x14:dataValidation>"
              "</x14:dataValidations></ext></extLst>"},
             kK,
             kJ,
             "<extLst><ext><x14:dataValidations count=\"1\"><x14:dataValidation><x14:formula1>"
             "<xm:f>J1</xm:f></x14:formula1><xm:sqref>J5:K56</xm:sqref></x14:dataValidation>"
             "</x14:dataValidations></ext></extLst>"}));

TEST(EditFeatures, TouchesOnlyTheFeaturesAskedFor) {
  SheetMarkup markup =
      MarkupOf({{"mergeCells", R"(<mergeCells><mergeCell ref="K2:K3"/></mergeCells>)"},
                {"conditionalFormatting", Format("K5", "0")}});
  ClearFeatures(markup, kK, kMergedCells);
  EXPECT_EQ(TextOf(markup), Format("K5", "0"));
}

TEST(MergedAreas, AreThoseOfTheSheet) {
  EXPECT_TRUE(MergedAreas(MarkupOf({})).empty());
  EXPECT_EQ(MergedAreas(
                MarkupOf({{"mergeCells", "<mergeCells><mergeCell ref=\"B2:H2\"/></mergeCells>"}})),
            (std::vector<Area>{{2, 2, 2, 8}}));
}

// A pasted column of single cells comes together to few rectangles.
TEST(PasteFeatures, JoinsCellsThatFollowEachOther) {
  std::string sqref;
  for (int row = 5; row <= 400; ++row) sqref += "K" + std::to_string(row) + " ";
  SheetMarkup markup = MarkupOf({{"conditionalFormatting", Format(sqref, "$K5")}});
  PasteFeatures(markup, kK, kJ, kAll);
  EXPECT_EQ(TextOf(markup), Format("J5:K400", "$K5"));
}

}  // namespace
}  // namespace vantora::embedded
