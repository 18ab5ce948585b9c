// Comments: what the package holds after they are added, changed, pasted and cleared.
#include "package/comments.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <set>

#include "markup/markup_support.h"
#include "package/follow_markup.h"
#include "package/xml_scanner.h"
#include "support/temporary_folder.h"

namespace vantora::embedded {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

constexpr char kSheet[] = "xl/worksheets/sheet1.xml";
constexpr char kTypes[] = "http://schemas.openxmlformats.org/officeDocument/2006/relationships/";

constexpr char kComments[] =
    R"(<comments xmlns="m"><authors><author>Ann</author></authors><commentList>)"
    R"(<comment ref="K6" authorId="0"><text><r><t>Checked</t></r></text></comment>)"
    R"(<comment ref="B8" authorId="0"><text><t>Units</t></text></comment></commentList>)"
    R"(</comments>)";

std::string NoteShape(int id, int row, int column, const std::string& anchor) {
  return "<v:shape id=\"_x0000_s" + std::to_string(id) +
         "\" type=\"#_x0000_t202\" style='z-index:1;\n "
         "visibility:hidden'><v:textbox><br></v:textbox>"
         "<x:ClientData ObjectType=\"Note\"><x:Anchor>\n " +
         anchor + "</x:Anchor><x:Row>" + std::to_string(row) + "</x:Row><x:Column>" +
         std::to_string(column) + "</x:Column></x:ClientData></v:shape>";
}

const std::string kSpinner =
    "<v:shape id=\"Spinner_x0020_1\" o:spid=\"_x0000_s1026\" type=\"#_x0000_t201\"><x:ClientData "
    "ObjectType=\"Spin\"><x:Anchor>10, 1, 5, 0, 11, 1, 6, 0</x:Anchor></x:ClientData></v:shape>";

const std::string kVml =
    "<xml xmlns:v=\"urn:schemas-microsoft-com:vml\" "
    "xmlns:o=\"urn:schemas-microsoft-com:office:office\""
    " xmlns:x=\"urn:schemas-microsoft-com:office:excel\"><o:shapelayout v:ext=\"edit\"><o:idmap "
    "v:ext=\"edit\" data=\"1\"/></o:shapelayout><v:shapetype id=\"_x0000_t202\"></v:shapetype>" +
    NoteShape(1025, 5, 10, "11, 15, 4, 10, 13, 9, 8, 4") + kSpinner +
    NoteShape(1027, 7, 1, "2, 15, 6, 10, 4, 15, 10, 4") + "</xml>";

class Comments : public ::testing::Test {
 protected:
  Comments() {
    package_->Write(kSheet, "<worksheet/>");
    markup_ = MarkupOf({{"sheetData", ""}, {"tableParts", "<tableParts/>"}});
  }

  void AddParts(const std::string& vml) {
    package_->Write("xl/comments1.xml", kComments);
    package_->Write("xl/drawings/vmlDrawing1.vml", vml);
    package_->AddRelationship(kSheet, std::string(kTypes) + "vmlDrawing",
                              "xl/drawings/vmlDrawing1.vml");
    package_->AddRelationship(kSheet, std::string(kTypes) + "comments", "xl/comments1.xml");
    markup_.FindOrInsert("legacyDrawing").text = "<legacyDrawing r:id=\"rId1\"/>";
    markup_.changed = false;
  }

  std::string Texts() const { return package_->Read("xl/comments1.xml"); }
  std::string Vml() const { return package_->Read("xl/drawings/vmlDrawing1.vml"); }

  std::unique_ptr<OpcPackage> package_ = OpcPackage::Create();
  SheetMarkup markup_;
  SheetComments comments_{*package_, markup_, kSheet};
};

TEST_F(Comments, TheFirstOneMakesItsParts) {
  EXPECT_FALSE(comments_.Has({8, 2}));
  comments_.Add({8, 2});
  comments_.SetText({8, 2}, "first <line>\nsecond");
  EXPECT_TRUE(comments_.Has({8, 2}));
  EXPECT_EQ(TextOf(markup_), "<legacyDrawing r:id=\"rId2\"/><tableParts/>");
  EXPECT_TRUE(markup_.changed);
  EXPECT_THAT(Texts(),
              HasSubstr("<authors><author></author></authors><commentList>"
                        "<comment ref=\"B8\" authorId=\"0\"><text><r><rPr><sz val=\"9\"/>"));
  EXPECT_THAT(Texts(), HasSubstr("<t xml:space=\"preserve\">first &lt;line&gt;\nsecond</t>"));
  EXPECT_EQ(package_->ContentTypeOf("xl/comments1.xml"),
            "application/vnd.openxmlformats-officedocument.spreadsheetml.comments+xml");
  EXPECT_EQ(package_->ContentTypeOf("xl/drawings/vmlDrawing1.vml"),
            "application/vnd.openxmlformats-officedocument.vmlDrawing");
  const auto& relationships = package_->RelationshipsOf(kSheet);
  ASSERT_EQ(relationships.size(), 2u);
  EXPECT_TRUE(relationships[0].IsType("comments"));
  EXPECT_EQ(relationships[1].target, "xl/drawings/vmlDrawing1.vml");
  // The box as Excel places it.
  EXPECT_THAT(Vml(), HasSubstr("data=\"1\""));
  EXPECT_THAT(Vml(), HasSubstr("<v:shapetype id=\"_x0000_t202\""));
  EXPECT_THAT(Vml(), HasSubstr("id=\"_x0000_s1025\""));
  EXPECT_THAT(Vml(), HasSubstr("margin-left:107.25pt;margin-top:97.5pt;width:96pt;height:55.5pt"));
  EXPECT_THAT(Vml(), HasSubstr("<x:Anchor>2, 15, 6, 10, 4, 15, 10, 4</x:Anchor>"));
  EXPECT_THAT(Vml(), HasSubstr("<x:Row>7</x:Row><x:Column>1</x:Column></x:ClientData>"));
}

TEST_F(Comments, BoxesAtTheEdgesStayOnTheSheet) {
  comments_.Add({1, 1});
  comments_.Add({kMaxRow, kMaxColumn});
  EXPECT_THAT(Vml(), HasSubstr("<x:Anchor>1, 15, 0, 2, 3, 15, 3, 16</x:Anchor>"));
  EXPECT_THAT(Vml(),
              HasSubstr("<x:Anchor>16380, 49, 1048571, 14, 16382, 49, 1048575, 8</x:Anchor>"));
}

TEST_F(Comments, AnotherSheetsDrawingGetsItsOwnIdentifiers) {
  package_->Write("xl/drawings/vmlDrawing1.vml", kVml);
  markup_.start = R"(<x:worksheet xmlns:x="m">)";
  markup_.prefix = "x:";
  comments_.Add({8, 2});
  EXPECT_THAT(package_->Read("xl/drawings/vmlDrawing2.vml"), HasSubstr("id=\"_x0000_s2049\""));
  // The sheet declares no prefix for relationships.
  EXPECT_THAT(TextOf(markup_), HasSubstr("<x:legacyDrawing xmlns:r=\"http://schemas."));
}

TEST_F(Comments, NumbersThatNoSheetHasAreLeftAlone) {
  std::string vml = kVml;
  vml.replace(vml.find("data=\"1\""), 8, "data=\"2147483647\"");
  vml.insert(vml.find("</xml>"),
             NoteShape(2147483647, 2147483647, 2147483647, "2147483647, 0, 2147483647"));
  AddParts(vml);
  comments_.Paste({1, 1, 8, 8}, {1, 2, 8, 9});
  EXPECT_THAT(
      Vml(), HasSubstr(NoteShape(2147483647, 2147483647, 2147483647, "2147483647, 0, 2147483647")));
  EXPECT_THAT(Vml(), HasSubstr("<x:Row>7</x:Row><x:Column>2</x:Column>"));
}

TEST_F(Comments, StandInOrderBesideExistingOnesAndControls) {
  AddParts(kVml);
  comments_.Add({6, 12});
  EXPECT_FALSE(markup_.changed);
  std::string expected = kComments;
  expected.insert(expected.find("</authors>"), "<author></author>");
  expected.insert(expected.find("<comment ref=\"B8\""),
                  "<comment ref=\"L6\" authorId=\"1\"><text/></comment>");
  EXPECT_EQ(Texts(), expected);
  std::string vml = Vml();
  EXPECT_THAT(vml, HasSubstr("id=\"_x0000_s1028\""));
  EXPECT_TRUE(vml.starts_with(kVml.substr(0, kVml.size() - 6)));
}

TEST_F(Comments, TextReplacesFormats) {
  AddParts(kVml);
  comments_.SetText({6, 11}, " two  blanks_x0041_");
  EXPECT_THAT(Texts(), HasSubstr("preserve\"> two  blanks_x005F_x0041_</t></r></text></comment>"
                                 "<comment ref=\"B8\""));
  comments_.SetText({6, 11}, "");
  EXPECT_THAT(Texts(), HasSubstr("<comment ref=\"K6\" authorId=\"0\"><text/></comment>"));
  EXPECT_EQ(Vml(), kVml);
}

TEST_F(Comments, VisibilityIsToggled) {
  AddParts(kVml);
  comments_.SetVisible({8, 2}, true);
  std::string shown = kVml;
  std::size_t shape = shown.find("_x0000_s1027");
  shown.replace(shown.find("hidden", shape), 6, "visible");
  shown.insert(shown.find("</x:ClientData>", shape), "<x:Visible/>");
  EXPECT_EQ(Vml(), shown);
  comments_.SetVisible({8, 2}, true);
  EXPECT_EQ(Vml(), shown);
  comments_.SetVisible({8, 2}, false);
  EXPECT_EQ(Vml(), kVml);
}

TEST_F(Comments, ClearingLeavesOthersAndControls) {
  AddParts(kVml);
  comments_.Clear(WholeColumns(11, 11));
  EXPECT_FALSE(comments_.Has({6, 11}));
  EXPECT_TRUE(comments_.Has({8, 2}));
  std::string left = kVml;
  std::string note = NoteShape(1025, 5, 10, "11, 15, 4, 10, 13, 9, 8, 4");
  left.erase(left.find(note), note.size());
  EXPECT_EQ(Vml(), left);
  comments_.Clear(WholeColumns(1, 9));
  EXPECT_FALSE(package_->Has("xl/comments1.xml"));
  EXPECT_THAT(Vml(), HasSubstr(kSpinner));
  EXPECT_THAT(Vml(), Not(HasSubstr("Note")));
  EXPECT_NE(markup_.Find("legacyDrawing"), nullptr);
}

TEST_F(Comments, TheLastOneTakesItsPartsWithIt) {
  comments_.Add({8, 2});
  comments_.Clear(WholeColumns(2, 2));
  EXPECT_FALSE(package_->Has("xl/comments1.xml"));
  EXPECT_FALSE(package_->Has("xl/drawings/vmlDrawing1.vml"));
  EXPECT_TRUE(package_->RelationshipsOf(kSheet).empty());
  EXPECT_EQ(TextOf(markup_), "<tableParts/>");
  comments_.Add({9, 2});
  EXPECT_TRUE(comments_.Has({9, 2}));
}

TEST_F(Comments, ClearingNothingChangesNothing) {
  AddParts(kVml);
  package_->Write("xl/comments1.xml", "<comments><authors/><commentList/></comments>");
  comments_.Clear(WholeColumns(30, 31));
  EXPECT_EQ(Texts(), "<comments><authors/><commentList/></comments>");
  EXPECT_EQ(Vml(), kVml);
}

TEST_F(Comments, APasteBringsTextsAndBoxes) {
  AddParts(kVml);
  comments_.Add({9, 12});
  comments_.Paste(WholeColumns(11, 11), WholeColumns(12, 12));
  EXPECT_TRUE(comments_.Has({6, 11}));
  EXPECT_FALSE(comments_.Has({9, 12}));
  EXPECT_THAT(Texts(), HasSubstr("<comment ref=\"L6\" authorId=\"0\"><text><r><t>Checked</t></r>"
                                 "</text></comment><comment ref=\"B8\""));
  std::string copy = NoteShape(1029, 5, 11, "12, 15, 4, 10, 14, 9, 8, 4");
  EXPECT_THAT(Vml(), HasSubstr(copy + "</xml>"));
  EXPECT_THAT(Vml(), Not(HasSubstr("<x:Row>8</x:Row>")));
}

TEST_F(Comments, ConversationsArePastedAsNotes) {
  AddParts(kVml);
  std::string texts = kComments;
  texts.replace(texts.find("Ann"), 3, "tc={1}");
  package_->Write("xl/comments1.xml", texts);
  package_->Write("xl/threadedComments/threadedComment1.xml",
                  R"(<ThreadedComments><threadedComment ref="K6"/><threadedComment ref="B8"/>)"
                  R"(</ThreadedComments>)");
  package_->AddRelationship(
      kSheet, "http://schemas.microsoft.com/office/2017/10/relationships/threadedComment",
      "xl/threadedComments/threadedComment1.xml");
  comments_.Paste(WholeColumns(11, 11), WholeColumns(12, 12));
  EXPECT_THAT(Texts(), HasSubstr("<comment ref=\"L6\" authorId=\"1\">"));
  comments_.Clear(WholeColumns(11, 12));
  EXPECT_EQ(package_->Read("xl/threadedComments/threadedComment1.xml"),
            "<ThreadedComments><threadedComment ref=\"B8\"/></ThreadedComments>");
}

// More boxes than a block of identifiers holds: the drawing claims another block.
TEST_F(Comments, ManyArePastedWithIdentifiersOfTheirOwn) {
  AddParts(kVml);
  std::string list;
  for (int row = 1; row <= 1200; ++row) {
    list += "<comment ref=\"D" + std::to_string(row) + "\" authorId=\"0\"><text/></comment>";
  }
  package_->Write("xl/comments1.xml", "<comments><authors><author/></authors><commentList>" + list +
                                          "</commentList></comments>");
  comments_.Paste(WholeColumns(4, 4), WholeColumns(5, 5));
  std::string vml = Vml();
  EXPECT_THAT(vml, HasSubstr("data=\"1,2\""));
  std::set<std::string> ids;
  XmlScanner scanner(vml, XmlScanner::Mode::kLenient);
  while (scanner.Next() != XmlScanner::Token::kDone) {
    if (scanner.token() != XmlScanner::Token::kStart || scanner.local_name() != "shape") continue;
    EXPECT_TRUE(ids.insert(std::string(*scanner.Attribute("id"))).second);
  }
  EXPECT_EQ(ids.size(), 1203u);
  EXPECT_TRUE(comments_.Has({1200, 5}));
}

// A workbook with notes and spinners in one legacy drawing, through a file and back.
TEST(CommentsInAFile, StandBesideFormControls) {
  std::filesystem::path model = VANTORA_SOURCE_DIR "/../shared/models/planning-2x60.xlsm";
  if (!std::filesystem::exists(model)) GTEST_SKIP() << "the planning models are not at hand";
  constexpr char kSheet4[] = "xl/worksheets/sheet4.xml";
  SheetMarkup markup =
      MarkupOf({{"sheetData", ""}, {"legacyDrawing", "<legacyDrawing r:id=\"rId1\"/>"}});
  auto package = OpcPackage::Open(model);
  const std::string vml_before = package->Read("xl/drawings/vmlDrawing1.vml");
  SheetComments comments(*package, markup, kSheet4);
  comments.Add({12, 5});
  comments.SetText({12, 5}, "Plan");
  const testing::TemporaryFolder folder;
  const auto path = folder / "model.xlsm";
  package->Save(path);
  auto reopened = OpcPackage::Open(path);
  EXPECT_TRUE(SheetComments(*reopened, markup, kSheet4).Has({12, 5}));
  EXPECT_TRUE(SheetComments(*reopened, markup, kSheet4).Has({8, 2}));
  std::string vml = reopened->Read("xl/drawings/vmlDrawing1.vml");
  EXPECT_TRUE(vml.starts_with(vml_before.substr(0, vml_before.size() - 6)));
  EXPECT_THAT(vml, HasSubstr("_x0000_s1034"));
}

}  // namespace
}  // namespace vantora::embedded
