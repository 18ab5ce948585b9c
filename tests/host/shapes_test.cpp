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
  EXPECT_THAT(ShapeNames(session_->file().package(), session_->file().part_of(0)),
              testing::UnorderedElementsAre("R&D button", "Spinner 1"));
}

TEST_F(ShapesTest, TheCallerIsAShapeOfTheActiveSheet) {
  auto application = session_->application();
  EXPECT_EQ(application->Caller(), "");
  session_->SetCaller("spinner 1");
  EXPECT_EQ(application->Caller(), "Spinner 1");
  EXPECT_THROW(session_->SetCaller("Spinner 2"), HostError);
  EXPECT_EQ(application->Caller(), "Spinner 1");
}

}  // namespace
}  // namespace vantora::embedded
