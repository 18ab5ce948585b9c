// What a paste takes over from another sheet of what stands around the cells.
#include "package/feature_transfer.h"

#include <gtest/gtest.h>

#include "markup/markup_support.h"

namespace vantora::embedded {
namespace {

constexpr unsigned kAll = kConditionalFormats | kValidations | kMergedCells | kHyperlinks;
constexpr Area kFrom{5, 2, 9, 4};  // B5:D9
constexpr Area kTo{1, 1, 5, 3};    // A1:C5

// Formulas that name "Gone" don't fit; differential formats are 10 higher; rId1 leads somewhere.
const TransferContext kContext{
    .differential_format = [](int id) { return id + 10; },
    .fits = [](const std::string& formula) { return formula.find("Gone!") == std::string::npos; },
    .relationship = [](const std::string& id) -> std::optional<std::string> {
      if (id != "rId1") return std::nullopt;
      return "rId7";
    },
};

struct Case {
  const char* what;
  MarkupElement source;
  std::string after;
  int left_out = 0;
};

void PrintTo(const Case& test, std::ostream* out) { *out << test.what; }

class TransferredFeatures : public testing::TestWithParam<Case> {};

TEST_P(TransferredFeatures, AreCutToTheAreaAndMoved) {
  const Case& test = GetParam();
  const SheetMarkup source = MarkupOf({{"sheetData", ""}, test.source});
  SheetMarkup target = MarkupOf({{"sheetData", ""}, {"pageMargins", "<pageMargins/>"}});
  EXPECT_EQ(TransferFeatures(source, kFrom, target, kTo, kAll, kContext), test.left_out);
  const bool behind_margins = test.source.name == "extLst";
  EXPECT_EQ(TextOf(target),
            behind_margins ? "<pageMargins/>" + test.after : test.after + "<pageMargins/>");
  EXPECT_EQ(target.changed, !test.after.empty());
}

INSTANTIATE_TEST_SUITE_P(
    Features, TransferredFeatures,
    testing::Values(
        Case{"a conditional format",
             {"conditionalFormatting",
              R"(<conditionalFormatting sqref="A5:C20"><cfRule type="expression" dxfId="2" )"
              R"(priority="3"><formula>$A5&lt;A$5</formula></cfRule></conditionalFormatting>)"},
             R"(<conditionalFormatting sqref="A1:B5"><cfRule type="expression" dxfId="12" )"
             R"(priority="3"><formula>$A1&lt;A$5</formula></cfRule></conditionalFormatting>)"},
        Case{"a conditional format elsewhere",
             {"conditionalFormatting",
              R"(<conditionalFormatting sqref="F1:F9"><cfRule priority="1"/>)"
              R"(</conditionalFormatting>)"},
             ""},
        Case{
            "validations, one of them elsewhere, unique identifiers left out",
            {"dataValidations",
             R"(<dataValidations count="2"><dataValidation sqref="Z1"/><dataValidation xr:uid="{1}" )"
             R"(sqref="B1:B7 D9"><formula1>C1</formula1></dataValidation></dataValidations>)"},
            R"(<dataValidations count="1"><dataValidation sqref="A1:A3 C5"><formula1>B1</formula1>)"
            R"(</dataValidation></dataValidations>)"},
        Case{"a validation that does not fit",
             {"dataValidations",
              R"(<dataValidations count="1"><dataValidation sqref="B5"><formula1>Gone!$A$1)"
              R"(</formula1></dataValidation></dataValidations>)"},
             "",
             1},
        Case{
            "merged cells, whole ones only",
            {"mergeCells",
             R"(<mergeCells count="2"><mergeCell ref="B5:C6"/><mergeCell ref="D9:E9"/></mergeCells>)"},
            R"(<mergeCells count="1"><mergeCell ref="A1:B2"/></mergeCells>)"},
        Case{"hyperlinks whose way out is known",
             {"hyperlinks",
              R"(<hyperlinks><hyperlink ref="C6" r:id="rId1"/><hyperlink ref="C7" r:id="rId2"/>)"
              R"(<hyperlink ref="C8" location="Plan!A1"/></hyperlinks>)"},
             R"(<hyperlinks><hyperlink ref="B2" r:id="rId7"/><hyperlink ref="B4" )"
             R"(location="Plan!A1"/></hyperlinks>)"},
        Case{"an extension's conditional format with what is declared around it",
             {"extLst",
              R"(<extLst xmlns:xm="urn:xm"><ext xmlns:x14="urn:x14" uri="{78C0D931}">)"
              R"(<x14:conditionalFormattings><x14:conditionalFormatting><x14:cfRule priority="1">)"
              R"(<xm:f>B5</xm:f></x14:cfRule><xm:sqref>B5:B9</xm:sqref>)"
              R"(</x14:conditionalFormatting></x14:conditionalFormattings></ext></extLst>)"},
             R"(<extLst><ext uri="{78C0D931-6437-407d-A8EE-F0AAD7539E65}" xmlns:x14=)"
             R"("http://schemas.microsoft.com/office/spreadsheetml/2009/9/main">)"
             R"(<x14:conditionalFormattings><x14:conditionalFormatting xmlns:x14="urn:x14" )"
             R"(xmlns:xm="urn:xm"><x14:cfRule priority="1"><xm:f>A1</xm:f></x14:cfRule>)"
             R"(<xm:sqref>A1:A5</xm:sqref></x14:conditionalFormatting>)"
             R"(</x14:conditionalFormattings></ext></extLst>)"}));

TEST(TransferFeatures, JoinsWhatTheTargetHas) {
  const SheetMarkup source = MarkupOf(
      {{"sheetData", ""},
       {"conditionalFormatting",
        R"(<conditionalFormatting sqref="B5"><cfRule priority="1"/></conditionalFormatting>)"},
       {"dataValidations",
        R"(<dataValidations count="1"><dataValidation sqref="B5"/></dataValidations>)"}});
  SheetMarkup target = MarkupOf(
      {{"sheetData", ""},
       {"conditionalFormatting",
        R"(<conditionalFormatting sqref="A1:H1"><cfRule priority="4"/></conditionalFormatting>)"},
       {"dataValidations",
        R"(<dataValidations count="1"><dataValidation sqref="A1 H1"/></dataValidations>)"}});
  TransferFeatures(source, {5, 2, 5, 2}, target, {1, 1, 1, 1}, kAll, kContext);
  // The target's own come first, and their rules are looked at first.
  EXPECT_EQ(TextOf(target),
            R"(<conditionalFormatting sqref="B1:H1"><cfRule priority="4"/></conditionalFormatting>)"
            R"(<conditionalFormatting sqref="A1"><cfRule priority="5"/></conditionalFormatting>)"
            R"(<dataValidations count="2"><dataValidation sqref="H1"/><dataValidation sqref="A1"/>)"
            R"(</dataValidations>)");
}

// The source's root declares another prefix for the spreadsheet's own elements.
TEST(TransferFeatures, BringsThePrefixesOfTheSource) {
  SheetMarkup source = MarkupOf(
      {{"sheetData", ""},
       {"mergeCells", R"(<x:mergeCells count="1"><x:mergeCell ref="B5:C5"/></x:mergeCells>)"}});
  source.start = R"(<x:worksheet xmlns:x="urn:main">)";
  source.prefix = "x:";
  SheetMarkup target = MarkupOf({{"sheetData", ""}});
  TransferFeatures(source, kFrom, target, kTo, kAll, kContext);
  EXPECT_EQ(TextOf(target),
            R"(<mergeCells count="1"><x:mergeCell xmlns:x="urn:main" ref="A1:B1"/></mergeCells>)");
}

// Both forms of the file format give the same names other uris.
TEST(TransferFeatures, TakesTheFormOfTheTarget) {
  const SheetMarkup source =
      MarkupOf({{"sheetData", ""},
                {"mergeCells", R"(<mergeCells count="1"><mergeCell ref="B5:C5"/></mergeCells>)"}});
  SheetMarkup target = MarkupOf({{"sheetData", ""}});
  target.start = R"(<worksheet xmlns="http://purl.oclc.org/ooxml/spreadsheetml/main">)";
  TransferFeatures(source, kFrom, target, kTo, kAll, kContext);
  EXPECT_EQ(TextOf(target), R"(<mergeCells count="1"><mergeCell ref="A1:B1"/></mergeCells>)");
}

}  // namespace
}  // namespace vantora::embedded
