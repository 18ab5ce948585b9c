// What is added to the styles part, and that the rest of it stays.
#include "package/style_editor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "package/package_support.h"
#include "package/xml_tree.h"

namespace vantora::embedded {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

class StyleEditorTest : public PackageTest {
 protected:
  std::unique_ptr<WorkbookFile> Open(const std::string& styles) const {
    Parts parts = OneSheet("<sheetData/>");
    AddWorkbookPart(parts, "styles", "styles.xml", styles);
    return OpenParts(parts);
  }
};

// Prefixed, with blanks, an unknown element, extensions, and lists in which entries are unequal
// only in how they are written.
constexpr char kWritten[] =
    R"(<?xml version="1.0"?>
<x:styleSheet xmlns:x='http://schemas.openxmlformats.org/spreadsheetml/2006/main' xmlns:e="urn:e">
 <x:numFmts count='1'><x:numFmt numFmtId="164" formatCode="0.0"/></x:numFmts>
 <x:fonts count="2" e:known="1"><x:font><x:sz val="11"/><x:name val="Arial"/></x:font>
  <x:font><x:i/><x:name val="Arial"/><x:sz val="11.0"/><x:b val="1"/><x:strike val="0"/></x:font>
 </x:fonts>
 <x:fills><x:fill><x:patternFill/></x:fill><x:fill><x:patternFill patternType="gray125"/></x:fill></x:fills>
 <x:borders count="1"><x:border/></x:borders>
 <x:cellXfs count="2"><x:xf numFmtId="0" fontId="0" fillId="0" borderId="0"/><x:xf
  numFmtId="164" fontId="0" fillId="0" borderId="0"><x:protection locked="0"/></x:xf></x:cellXfs>
 <!-- kept --><e:other a = "1"/>
 <x:dxfs count="0"/><x:extLst><x:ext uri="{1}"><e:thing/></x:ext></x:extLst>
</x:styleSheet>)";

TEST_F(StyleEditorTest, AddsEntriesAndLeavesTheRestByteForByte) {
  auto file = Open(kWritten);
  StyleEditor& editor = file->style_editor();
  FormatChange fill;
  fill.fill_color_index = 3;
  const StyleId red = editor.Changed(1, fill);
  EXPECT_EQ(red, 2u);
  EXPECT_EQ(editor.Changed(1, fill), red);
  EXPECT_EQ(editor.Changed(red, fill), red);
  const CellFormat& format = file->model().styles[red];
  EXPECT_EQ(format.fill_color_index, 3);
  EXPECT_FALSE(format.locked);  // as the format that it came from

  std::string expected = kWritten;
  const auto replace = [&](std::string_view before, std::string_view after) {
    expected.replace(expected.find(before), before.size(), after);
  };
  replace("</x:fills>",
          "<x:fill><x:patternFill patternType=\"solid\"><x:fgColor indexed=\"10\"/><x:bgColor "
          "indexed=\"64\"/></x:patternFill></x:fill></x:fills>");
  replace("<x:cellXfs count=\"2\">", "<x:cellXfs count=\"3\">");
  replace("</x:cellXfs>",
          "<x:xf numFmtId=\"164\" fontId=\"0\" fillId=\"2\" borderId=\"0\" applyFill=\"1\">"
          "<x:protection locked=\"0\"/></x:xf></x:cellXfs>");
  EXPECT_EQ(editor.Text(), expected);
}

TEST_F(StyleEditorTest, TakesEqualEntriesHoweverTheyAreWritten) {
  auto file = Open(kWritten);
  StyleEditor& editor = file->style_editor();
  FormatChange change;
  change.bold = true;
  change.italic = true;
  const StyleId style = editor.Changed(0, change);
  EXPECT_EQ(style, 2u);
  EXPECT_THAT(editor.Text(), HasSubstr("fontId=\"1\""));
  EXPECT_THAT(editor.Text(), HasSubstr("<x:fonts count=\"2\""));

  // Taking a fill away where there is none changes nothing.
  FormatChange none;
  none.fill_color_index = -4142;
  EXPECT_EQ(editor.Changed(style, none), style);
}

TEST_F(StyleEditorTest, MakesTheTablesThatASparsePartLacks) {
  const std::string main = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";
  auto file = Open("<styleSheet xmlns=\"" + main + "\"><fills count=\"0\"/><dxfs/></styleSheet>");
  FormatChange change;
  change.bold = true;
  change.sides[kLeftSide] = LineChange{};
  EXPECT_EQ(file->style_editor().Changed(0, change), 1u);
  const std::string text = Saved(*file, "xl/styles.xml");
  // In the schema's order; the first two fills have a meaning.
  EXPECT_THAT(text, ::testing::MatchesRegex(
                        ".*<fonts count=\"2\">.*</fonts><fills count=\"2\">.*gray125.*</fills>"
                        "<borders count=\"2\">.*<left style=\"thin\">.*</borders>"
                        "<cellXfs count=\"2\">.*</cellXfs><dxfs/></styleSheet>"));
}

TEST_F(StyleEditorTest, ChangesPatternsAndGradients) {
  const std::string main = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";
  const auto part = [&](const std::string& fill) {
    return "<styleSheet xmlns=\"" + main + "\"><fills><fill/><fill/><fill>" + fill +
           "</fill></fills><cellXfs><xf/><xf fillId=\"2\"/></cellXfs></styleSheet>";
  };
  struct Case {
    const char* fill;
    std::optional<int> color;
    std::optional<FillPattern> pattern;
    const char* after;
  } const cases[] = {
      {"<patternFill patternType=\"gray125\"><fgColor rgb=\"FF000000\"/></patternFill>",
       3,
       {},
       "<patternFill patternType=\"gray125\"><fgColor rgb=\"FF000000\"/><bgColor indexed=\"10\"/>"},
      {"<patternFill patternType=\"gray125\"><bgColor theme=\"4\" tint=\"0.5\"/></patternFill>",
       {},
       FillPattern::kSolid,
       "<patternFill patternType=\"solid\"><fgColor theme=\"4\" tint=\"0.5\"/><bgColor "
       "indexed=\"64\"/>"},
      {"<gradientFill degree=\"90\"><stop position=\"0\"/></gradientFill>",
       3,
       {},
       "<fill><patternFill patternType=\"solid\"><fgColor indexed=\"10\"/>"},
      {"<patternFill patternType=\"solid\"><fgColor theme=\"4\" tint=\"0.5\"/></patternFill>",
       3,
       {},
       "<patternFill patternType=\"solid\"><fgColor indexed=\"10\"/></patternFill>"},
  };
  for (const Case& c : cases) {
    auto file = Open(part(c.fill));
    FormatChange change;
    change.fill_color_index = c.color;
    change.fill_pattern = c.pattern;
    file->style_editor().Changed(1, change);
    EXPECT_THAT(file->style_editor().Text(), HasSubstr(c.after));
  }
}

TEST_F(StyleEditorTest, ImportsFormatsOfAnotherWorkbook) {
  auto source = Open(kWritten);
  FormatChange change;
  change.bold = true;
  change.fill_color_index = 6;
  change.wrap_text = true;
  const StyleId style = source->style_editor().Changed(1, change);

  auto target = WorkbookFile::Create({"Data"});
  StyleEditor& editor = target->style_editor();
  const StyleId imported = editor.Import(source->style_editor(), style);
  EXPECT_EQ(imported, 1u);
  EXPECT_EQ(editor.Import(source->style_editor(), style), imported);
  EXPECT_EQ(target->model().styles[imported].fill_color_index, 6);
  EXPECT_FALSE(target->model().styles[imported].locked);
  const std::string text = editor.Text();
  EXPECT_THAT(text, HasSubstr("<numFmts count=\"1\"><numFmt numFmtId=\"164\" formatCode=\"0.0\"/>"
                              "</numFmts><fonts count=\"2\">"));
  EXPECT_THAT(text, HasSubstr("<font><b/><sz val=\"11\"/><name val=\"Arial\"/></font>"));
  EXPECT_THAT(text, HasSubstr("<alignment wrapText=\"1\"/><protection locked=\"0\"/>"));
  EXPECT_THAT(text, Not(HasSubstr("x:")));

  // The source's font 1 is not needed there, and 164 means something else elsewhere.
  FormatChange bold;
  bold.bold = true;
  auto other = Open(std::string(kWritten).replace(std::string(kWritten).find("0.0"), 3, "0%"));
  const StyleId percent = other->style_editor().Changed(1, bold);
  EXPECT_EQ(editor.Import(other->style_editor(), percent), 2u);
  EXPECT_THAT(editor.Text(), HasSubstr("<numFmt numFmtId=\"165\" formatCode=\"0%\"/>"));
}

TEST_F(StyleEditorTest, ImportsTheNamedStylesThatAreMissing) {
  // A style of the user's, the built-in "Percent" in German, and "Normal".
  auto source = Open(
      "<styleSheet xmlns:r='r'><numFmts count='1'><numFmt numFmtId='170' formatCode='0.000'/>"
      "</numFmts><fonts count='2'><font><sz val='11'/></font><font><i/></font></fonts>"
      "<fills count='1'><fill><patternFill/></fill></fills><borders count='1'><border/></borders>"
      "<cellStyleXfs count='3'><xf numFmtId='0' fontId='0' fillId='0' borderId='0'/>"
      "<xf numFmtId='170' fontId='1' fillId='0' borderId='0'/><xf numFmtId='9'/></cellStyleXfs>"
      "<cellXfs count='3'><xf xfId='0'/><xf fontId='1' numFmtId='170' xfId='1'/>"
      "<xf numFmtId='9' xfId='2'/></cellXfs><cellStyles count='3'>"
      "<cellStyle name='Standard' xfId='0' builtinId='0'/><cellStyle name='Ratio' xfId='1' "
      "r:uid='1'/><cellStyle name='Prozent' xfId='2' builtinId='5'/></cellStyles></styleSheet>");
  auto target = Open(
      "<styleSheet><fonts count='1'><font><sz val='11'/></font></fonts>"
      "<fills count='1'><fill><patternFill/></fill></fills><borders count='1'><border/></borders>"
      "<cellStyleXfs count='2'><xf/><xf numFmtId='9'/></cellStyleXfs><cellXfs count='1'><xf/>"
      "</cellXfs><cellStyles count='2'><cellStyle name='Normal' xfId='0' builtinId='0'/>"
      "<cellStyle name='Percent' xfId='1' builtinId='5'/></cellStyles></styleSheet>");
  StyleEditor& editor = target->style_editor();
  for (StyleId style : {1u, 2u, 1u}) editor.Import(source->style_editor(), style);
  const std::string text = editor.Text();
  EXPECT_THAT(text, HasSubstr("<cellStyleXfs count='3'><xf/><xf numFmtId='9'/>"
                              "<xf numFmtId=\"164\" fontId=\"1\" fillId=\"0\" borderId=\"0\"/>"
                              "</cellStyleXfs>"));
  EXPECT_THAT(text, HasSubstr("builtinId='5'/><cellStyle name=\"Ratio\" xfId=\"2\"/>"
                              "</cellStyles>"));
  EXPECT_THAT(text, AllOf(HasSubstr("xfId=\"1\""), HasSubstr("cellStyles count='3'")));

  // A workbook that says nothing of named styles gets them with the default one first.
  auto sparse = Open("<styleSheet><cellXfs count='1'><xf/></cellXfs></styleSheet>");
  sparse->style_editor().Import(source->style_editor(), 0);
  EXPECT_THAT(sparse->style_editor().Text(), Not(HasSubstr("cellStyle")));
  sparse->style_editor().Import(source->style_editor(), 1);
  EXPECT_THAT(sparse->style_editor().Text(),
              AllOf(HasSubstr("<cellStyleXfs count=\"2\">"), HasSubstr("name=\"Normal\""),
                    HasSubstr("name=\"Ratio\" xfId=\"1\"")));
}

TEST_F(StyleEditorTest, ReplacesThePalette) {
  auto file = Open(kWritten);
  FormatChange fill;
  fill.fill_color_index = 3;
  StyleEditor& editor = file->style_editor();
  editor.Changed(0, fill);
  Palette palette = DefaultPalette();
  palette[2] = 0x123456;
  editor.SetPalette(palette);
  const std::string text = Saved(*file, "xl/styles.xml");
  EXPECT_THAT(text, HasSubstr("<x:dxfs count=\"0\"/><x:colors><x:indexedColors>"));
  auto again = Open(text);
  EXPECT_EQ(again->model().styles.palette, palette);
  EXPECT_EQ(again->model().styles[2].fill_color_index, 3);

  // What was written is replaced in turn.
  palette[2] = 0xABCDEF;
  again->style_editor().SetPalette(palette);
  const std::string twice = again->style_editor().Text();
  EXPECT_THAT(twice, HasSubstr("00ABCDEF"));
  EXPECT_THAT(twice, Not(HasSubstr("00123456")));
}

TEST_F(StyleEditorTest, GivesAWorkbookWithoutStylesAPart) {
  auto file = OpenParts(OneSheet("<sheetData/>"));
  FormatChange bold;
  bold.bold = true;
  const StyleId style = file->style_editor().Changed(0, bold);
  file->model().sheets[0]->cells.SetStyle({1, 1}, style);
  file->Save(Path("saved.xlsx"));
  auto again = WorkbookFile::Open(Path("saved.xlsx"));
  EXPECT_EQ(again->model().styles.formats.size(), 2u);
  EXPECT_EQ(again->model().sheets[0]->StyleOf({1, 1}), 1u);
}

TEST_F(StyleEditorTest, ReadsAndPatchesRealStylesParts) {
  const auto books = ModelWorkbooks();
  if (books.empty()) GTEST_SKIP() << "the realistic workbooks are not beside the checkout";
  for (const auto& book : books) {
    auto file = WorkbookFile::Open(book);
    Styles& styles = file->model().styles;
    const std::size_t count = styles.formats.size();
    StyleEditor& editor = file->style_editor();
    FormatChange change;
    change.italic = true;
    change.fill_color_index = 46;
    for (StyleId style = 0; style < count; ++style) {
      const StyleId changed = editor.Changed(style, change);
      ASSERT_LT(changed, styles.formats.size());
      EXPECT_EQ(editor.Changed(style, change), changed);
      EXPECT_EQ(styles[changed].text_format, styles[style].text_format);
      EXPECT_EQ(styles[changed].locked, styles[style].locked);
    }
    const std::size_t formats = styles.formats.size();
    file->Save(Path("saved.xlsm"));
    EXPECT_EQ(WorkbookFile::Open(Path("saved.xlsm"))->model().styles.formats.size(), formats);
  }
}

}  // namespace
}  // namespace vantora::embedded
