// The default font that widths of columns are counted in.
#include "package/column_width.h"

#include <gtest/gtest.h>

#include "package/styles_reader.h"
#include "package_support.h"

namespace vantora::embedded {
namespace {

TEST(ColumnWidthTest, DigitsHaveTheWidthThatExcelDrawsThemWith) {
  const struct {
    const char* font;
    double points;
    int pixels;
  } cases[] = {
      {"Calibri", 11, 7}, {"Calibri", 8, 6},       {"calibri", 12, 8},     {"Arial", 10, 7},
      {"Verdana", 10, 8}, {"Aptos Narrow", 11, 7}, {"Unheard Of", 20, 15},
  };
  for (const auto& one : cases) {
    EXPECT_EQ(MaxDigitWidth(one.font, one.points), one.pixels) << one.font << ' ' << one.points;
  }
}

class DefaultFontTest : public PackageTest {};

TEST_F(DefaultFontTest, IsThatOfTheNormalStyleInWhateverLanguage) {
  Parts parts = OneSheet("<sheetData/>");
  AddWorkbookPart(
      parts, "styles", "styles.xml",
      "<styleSheet xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\"><fonts>"
      "<font><sz val=\"30\"/><name val=\"Arial\"/></font>"
      "<font><sz val=\"10\"/><name val=\"Verdana\"/></font></fonts>"
      "<cellStyleXfs><xf fontId=\"0\"/><xf fontId=\"1\"/></cellStyleXfs>"
      "<cellStyles><cellStyle name=\"Titel\" xfId=\"0\" builtinId=\"15\"/>"
      "<cellStyle name=\"Standard\" xfId=\"1\" builtinId=\"0\"/></cellStyles></styleSheet>");
  EXPECT_EQ(OpenParts(parts)->model().styles.max_digit_width, 8);
}

}  // namespace
}  // namespace vantora::embedded
