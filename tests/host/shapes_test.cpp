#include "host/shapes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/session.h"

namespace vantora::embedded {
namespace {

constexpr std::string_view kRelationships =
    "http://schemas.openxmlformats.org/officeDocument/2006/relationships/";

class ShapesTest : public testing::Test {
 protected:
  ShapesTest() : session_(Session::Create({"Planning"})) {
    OpcPackage& package = session_->file().package();
    const std::string& sheet = session_->file().part_of(0);
    package.Write("xl/drawings/drawing1.xml",
                  "<xdr:wsDr xmlns:xdr=\"d\"><xdr:sp><xdr:cNvPr id=\"2\" name=\"R&amp;D button\"/>"
                  "</xdr:sp></xdr:wsDr>");
    package.Write("xl/drawings/vmlDrawing1.vml",
                  "<xml><v:shape id=\"Spinner_x0020_1\"><x:ClientData ObjectType=\"Spin\"><br>"
                  "</x:ClientData></v:shape><v:shape id=\"_x0000_s1025\"><x:ClientData "
                  "ObjectType=\"Note\"/></v:shape></xml>");
    package.AddRelationship(sheet, std::string(kRelationships) + "drawing",
                            "../drawings/drawing1.xml");
    package.AddRelationship(sheet, std::string(kRelationships) + "vmlDrawing",
                            "../drawings/vmlDrawing1.vml");
  }

  std::unique_ptr<Session> session_;
};

TEST_F(ShapesTest, NamesShapesAndControlsButNoNotes) {
  OpcPackage& package = session_->file().package();
  const std::string& sheet = session_->file().part_of(0);
  EXPECT_THAT(ShapeNames(package, sheet), testing::UnorderedElementsAre("R&D button", "Spinner 1"));
  package.Write("xl/drawings/drawing1.xml",
                "<xdr:wsDr xmlns:xdr=\"d\"><xdr:cNvPr id=\"2\" name=\"Spinner 1\"/></xdr:wsDr>");
  EXPECT_THAT(ShapeNames(package, sheet), testing::ElementsAre("Spinner 1"))
      << "described twice, and one control";
}

TEST_F(ShapesTest, TheCallerIsAShapeOfTheActiveSheet) {
  auto application = session_->application();
  EXPECT_EQ(application->Caller(), "");
  session_->SetCaller("spinner 1");
  EXPECT_EQ(application->Caller(), "Spinner 1");
  EXPECT_THROW(session_->SetCaller("Spinner 2"), HostError);
  EXPECT_EQ(application->Caller(), "Spinner 1");
}

// Workbooks of Excel 2010 and later describe a control twice, older ones in the legacy drawing.
TEST_F(ShapesTest, TheLinkedCellIsReadFromEitherDescriptionOfAControl) {
  OpcPackage& package = session_->file().package();
  const std::string& sheet = session_->file().part_of(0);
  package.Write("xl/drawings/vmlDrawing1.vml",
                "<xml><v:shape id=\"Spinner_x0020_1\"><x:ClientData ObjectType=\"Spin\"><br>"
                "<x:FmlaLink>'R&amp;D'!$C$12</x:FmlaLink></x:ClientData></v:shape>"
                "<v:shape id=\"Spinner_x0020_2\"><x:ClientData ObjectType=\"Spin\">"
                "<x:FmlaLink>$C$20</x:FmlaLink></x:ClientData></v:shape>"
                "<v:shape id=\"Spinner_x0020_3\"><x:ClientData ObjectType=\"Spin\"/></v:shape>"
                "<v:shape id=\"_x0000_s1025\"><x:ClientData ObjectType=\"Note\"/></v:shape></xml>");
  package.Write("xl/ctrlProps/ctrlProp1.xml",
                "<formControlPr objectType=\"Spin\" fmlaLink=\"$D$30\"/>");
  const std::string id = package.AddRelationship(sheet, std::string(kRelationships) + "ctrlProp",
                                                 "xl/ctrlProps/ctrlProp1.xml");
  SheetMarkup& markup = session_->file().markup(0);
  markup.elements.push_back(
      {"AlternateContent",
       "<mc:AlternateContent><mc:Choice><controls><control shapeId=\"1026\" r:id=\"" + id +
           "\" name=\"Spinner 2\"/></controls></mc:Choice></mc:AlternateContent>"});
  auto linked_cell = [&](std::string_view name) {
    return session_->Worksheet("Planning")->Shapes(name)->LinkedCell();
  };
  EXPECT_EQ(linked_cell("SPINNER 1"), "'R&D'!$C$12");
  EXPECT_EQ(linked_cell("Spinner 2"), "$D$30");
  EXPECT_EQ(linked_cell("Spinner 3"), "");
  EXPECT_THROW(linked_cell("R&D button"), HostError) << "no form control";
  EXPECT_THROW(session_->Worksheet("Planning")->Shapes("Spinner 4"), HostError);
  EXPECT_THROW(session_->Worksheet("Planning")->Shapes("_x0000_s1025"), HostError)
      << "a note's box";
}

}  // namespace
}  // namespace vantora::embedded
