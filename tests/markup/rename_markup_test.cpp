// A sheet's new name in what stands around the cells.
#include "package/rename_markup.h"

#include <gtest/gtest.h>

namespace vantora::embedded {
namespace {

TEST(RenameSheetInMarkup, FollowsInEachKindOfPart) {
  const struct {
    const char* text;
    // "" where the text stays.
    const char* renamed;
  } kCases[] = {
      {"<cfRule><formula>A1&gt;Plan!$B$2</formula></cfRule>",
       "<cfRule><formula>A1&gt;'R&amp;D'!$B$2</formula></cfRule>"},
      {"<cfvo type='formula' val='Plan!$A$1'/>", "<cfvo type='formula' val=''R&amp;D'!$A$1'/>"},
      {"<dataValidation><formula1>Plan!$A$1:$A$3</formula1><formula2>\"Plan!\"</formula2>"
       "</dataValidation>",
       "<dataValidation><formula1>'R&amp;D'!$A$1:$A$3</formula1><formula2>\"Plan!\"</formula2>"
       "</dataValidation>"},
      {"<x14:sparkline><xm:f>Plan!A1:C1</xm:f><xm:sqref>D1</xm:sqref></x14:sparkline>",
       "<x14:sparkline><xm:f>'R&amp;D'!A1:C1</xm:f><xm:sqref>D1</xm:sqref></x14:sparkline>"},
      {"<controlPr linkedCell=\"Plan!$C$1\" listFillRange=\"Data!A1\"/>",
       "<controlPr linkedCell=\"'R&amp;D'!$C$1\" listFillRange=\"Data!A1\"/>"},
      {"<formControlPr fmlaLink=\"plan!$C$1\"/>", "<formControlPr fmlaLink=\"'R&amp;D'!$C$1\"/>"},
      {"<xdr:sp textlink=\"Plan!$C$1\"><a>Plan!</a></xdr:sp>",
       "<xdr:sp textlink=\"'R&amp;D'!$C$1\"><a>Plan!</a></xdr:sp>"},
      {"<c:tx><c:strRef><c:f>Plan!$A$1</c:f><c:v>Plan!</c:v></c:strRef></c:tx>",
       "<c:tx><c:strRef><c:f>'R&amp;D'!$A$1</c:f><c:v>Plan!</c:v></c:strRef></c:tx>"},
      {"<c:pivotSource><c:name>[Book.xlsx]Plan!Pivot</c:name></c:pivotSource>",
       "<c:pivotSource><c:name>[Book.xlsx]R&amp;D!Pivot</c:name></c:pivotSource>"},
      {"<c:chart><c:name>[Book.xlsx]Plan!Pivot</c:name></c:chart>", ""},
      {"<cacheSource><worksheetSource ref=\"A1:B2\" sheet=\"Plan\"/></cacheSource>",
       "<cacheSource><worksheetSource ref=\"A1:B2\" sheet=\"R&amp;D\"/></cacheSource>"},
      {"<cacheSource><worksheetSource sheet=\"Plan\" r:id=\"rId1\"/></cacheSource>", ""},
      {"<dataRef ref=\"A1\" sheet=\"Planning\"/>", ""},
      {"<table><calculatedColumnFormula>Plan!B2*2</calculatedColumnFormula></table>",
       "<table><calculatedColumnFormula>'R&amp;D'!B2*2</calculatedColumnFormula></table>"},
      {"<hyperlink ref=\"A1\" location=\"Plan!A1\" display=\"Plan!A1\"/>",
       "<hyperlink ref=\"A1\" location=\"'R&amp;D'!A1\" display=\"Plan!A1\"/>"},
      {"<hyperlink ref=\"A1\" r:id=\"rId1\" location=\"Plan!A1\"/>", ""},
  };
  for (const auto& test : kCases) {
    std::string renamed = RenameSheetInMarkup(test.text, {"Plan", "R&D"}).value_or("");
    // However an apostrophe is written.
    for (std::size_t at; (at = renamed.find("&apos;")) != std::string::npos;) {
      renamed.replace(at, 6, "'");
    }
    EXPECT_EQ(renamed, test.renamed) << test.text;
  }
}

TEST(RenameSheetInMarkup, FollowsInLegacyDrawings) {
  EXPECT_EQ(RenameSheetInMarkup("<x:ClientData><br><x:FmlaLink>Plan!$A$1</x:FmlaLink>"
                                "</x:ClientData>",
                                {"Plan", "Budget"}, XmlScanner::Mode::kLenient),
            "<x:ClientData><br><x:FmlaLink>Budget!$A$1</x:FmlaLink></x:ClientData>");
}

}  // namespace
}  // namespace vantora::embedded
