// The default font that widths of columns are counted in.
#include <gtest/gtest.h>

#include "package/column_width.h"

namespace vantora::embedded {
namespace {

TEST(ColumnWidthTest, TheDefaultFontIsThatOfTheNormalStyle) {
  const struct {
    const char* font;
    int pixels;
  } cases[] = {
      {"<sz val=\"11\"/><name val=\"Calibri\"/>", 7},
      {"<sz val=\"8\"/><name val=\"Calibri\"/>", 6},
      {"<sz val=\"12\"/><name val=\"calibri\"/>", 8},
      {"<sz val=\"10\"/><name val=\"Arial\"/>", 7},
      {"<sz val=\"10\"/><name val=\"Verdana\"/>", 8},
      {"<sz val=\"11\"/><name val=\"Aptos Narrow\"/>", 7},
      {"<sz val=\"20\"/><name val=\"Unheard Of\"/>", 15},
      {"", 7},
  };
  for (const auto& one : cases) {
    pugi::xml_document document;
    std::string text =
        "<styleSheet><fonts><font><sz val=\"30\"/><name val=\"Arial\"/></font><font>" +
        std::string(one.font) +
        "</font></fonts><cellStyleXfs><xf fontId=\"0\"/><xf fontId=\"1\"/></cellStyleXfs>"
        "<cellStyles><cellStyle name=\"Heading\" xfId=\"0\" builtinId=\"16\"/>"
        "<cellStyle name=\"Normal\" xfId=\"1\" builtinId=\"0\"/></cellStyles></styleSheet>";
    ASSERT_TRUE(document.load_string(text.c_str()));
    EXPECT_EQ(MaxDigitWidth(document.child("styleSheet")), one.pixels) << one.font;
  }
}

}  // namespace
}  // namespace vantora::embedded
