// New names for the sheets of a file, and what names them.
#include <gmock/gmock.h>

#include "core/host_error.h"
#include "host/session.h"
#include "package/package_support.h"

namespace vantora::embedded {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::Each;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr char kSecondSheet[] = "xl/worksheet/second.xml";
constexpr char kChart[] = "xl/charts/chart1.xml";
constexpr char kPivotCache[] = "xl/pivotCache/cache.xml";

// "Data", and "Sum", whose cells, validation, link, drawing and chart look at it.
Parts TwoSheets() {
  Parts parts = OneSheet(
      "<sheetData><row r=\"1\"><c r=\"A1\"><v>5</v></c><c r=\"B1\"><v>7</v></c></row></sheetData>",
      "<definedNames>"
      "<definedName name=\"_xlnm.Print_Titles\" localSheetId=\"0\">Data!$1:$2</definedName>"
      "<definedName name=\"all\">Data!$A$1:$B$1</definedName>"
      "<definedName name=\"local\" localSheetId=\"0\">Data!$B$1</definedName>"
      "</definedNames>");
  AddWorkbookPart(
      parts, "worksheet", "worksheet/second.xml",
      "<worksheet xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\" "
      "xmlns:r=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships\"><sheetData>"
      "<row r=\"1\"><c r=\"A1\"><f t=\"shared\" ref=\"A1:A2\" si=\"0\">Data!A1*2</f><v>10</v></c>"
      "<c r=\"B1\"><f>Data!local+1</f><v>8</v></c><c r=\"C1\"><f>SUM(all)</f><v>12</v></c></row>"
      "<row r=\"2\"><c r=\"A2\"><f t=\"shared\" si=\"0\"/><v>0</v></c></row></sheetData>"
      "<dataValidations count=\"1\"><dataValidation type=\"list\" sqref=\"D1\">"
      "<formula1>Data!$A$1:$B$1</formula1></dataValidation></dataValidations>"
      "<hyperlinks><hyperlink ref=\"E1\" location=\"Data!A1\"/></hyperlinks>"
      "<drawing r:id=\"rId1\"/></worksheet>");
  std::string& workbook = parts[kWorkbookPart];
  workbook.insert(workbook.find("</sheets>"),
                  "<sheet name=\"Sum\" sheetId=\"2\" r:id=\"rIdworksheet\"/>");
  parts["xl/worksheet/_rels/second.xml.rels"] =
      "<Relationships><Relationship Id=\"rId1\" Type=\"http://x/drawing\" "
      "Target=\"/xl/drawings/drawing1.xml\"/></Relationships>";
  parts["xl/drawings/drawing1.xml"] = "<wsDr><sp textlink=\"Data!$A$1\"/></wsDr>";
  parts["xl/drawings/_rels/drawing1.xml.rels"] =
      "<Relationships><Relationship Id=\"rId1\" Type=\"http://x/chart\" "
      "Target=\"/xl/charts/chart1.xml\"/><Relationship Id=\"rId2\" Type=\"http://x/hyperlink\" "
      "Target=\"#Data!A1\"/></Relationships>";
  parts[kChart] =
      "<chartSpace><val><numRef><f>Data!$A$1:$B$1</f><numCache><ptCount val=\"2\"/>"
      "<pt idx=\"0\"><v>5</v></pt><pt idx=\"1\"><v>7</v></pt></numCache></numRef></val>"
      "</chartSpace>";
  AddWorkbookPart(parts, "pivotCacheDefinition", "pivotCache/cache.xml",
                  "<pivotCacheDefinition><cacheSource><worksheetSource ref=\"A1:B1\" "
                  "sheet=\"Data\"/></cacheSource></pivotCacheDefinition>");
  return parts;
}

class RenamedSheet : public PackageTest {
 protected:
  void Open(const Parts& parts) { session = Session::Open(WriteZipFile("book.xlsx", parts)); }
  std::string Part(const std::string& part) {
    session->Save(Path("renamed.xlsx"));
    return OpcPackage::Open(Path("renamed.xlsx"))->Read(part);
  }
  // However an apostrophe is written.
  static std::string Plain(std::string text) {
    for (std::size_t at; (at = text.find("&apos;")) != std::string::npos;) text.replace(at, 6, "'");
    return text;
  }

  std::unique_ptr<Session> session;
};

TEST_F(RenamedSheet, IsFollowedByAllThatNamesIt) {
  Open(TwoSheets());
  session->RecordChanges();
  session->Worksheet("Data")->SetName("My data");
  session->Range("'My data'!A1")->SetValue(Value(6.0));
  EXPECT_EQ(session->Range("Sum!A1")->Formula(), "='My data'!A1*2");
  EXPECT_EQ(session->Range("Sum!A1")->Value(), Value(12.0));
  EXPECT_EQ(session->Range("Sum!C1")->Value(), Value(13.0));
  session->Range("'My data'!B1")->SetValue(Value(8.0));
  EXPECT_EQ(session->Range("Sum!B1")->Formula(), "='My data'!local+1");
  EXPECT_EQ(session->Range("Sum!B1")->Value(), Value(9.0));
  EXPECT_THAT(
      session->Changes().others,
      AllOf(Contains("worksheet \"Data\" renamed to \"My data\""), Each(Not(HasSubstr("defined")))))
      << "a name that only follows is no change";

  const std::string workbook = Plain(Part(kWorkbookPart));
  EXPECT_THAT(workbook, AllOf(HasSubstr("<sheet name=\"My data\""), HasSubstr(">'My data'!$1:$2<"),
                              HasSubstr(">'My data'!$A$1:$B$1<"), HasSubstr(">'My data'!$B$1<")));
  EXPECT_THAT(Plain(Part(kSecondSheet)),
              AllOf(HasSubstr("<formula1>'My data'!$A$1:$B$1</formula1>"),
                    HasSubstr("location=\"'My data'!A1\""), Not(HasSubstr("Data!"))));
  EXPECT_THAT(Plain(Part("xl/drawings/drawing1.xml")), HasSubstr("textlink=\"'My data'!$A$1\""));
  EXPECT_THAT(Plain(Part("xl/drawings/_rels/drawing1.xml.rels")),
              HasSubstr("Target=\"#'My data'!A1\""));
  EXPECT_THAT(Plain(Part(kChart)),
              AllOf(HasSubstr("<f>'My data'!$A$1:$B$1</f>"), HasSubstr("<v>6</v>")))
      << "the values that the chart shows follow by the new name";
  EXPECT_THAT(Part(kPivotCache), HasSubstr("sheet=\"My data\""));

  const auto again = Session::Open(Path("renamed.xlsx"));
  EXPECT_EQ(again->Range("Sum!A2")->Formula(), "='My data'!A2*2");
  EXPECT_EQ(again->Range("Sum!B1")->Value(), Value(9.0));
}

TEST_F(RenamedSheet, TextsThatNameItDoNotFollow) {
  Open(TwoSheets());
  session->Range("Sum!F1")->SetFormula("=IFERROR(INDIRECT(\"Data!A1\"),\"gone\")");
  EXPECT_EQ(session->Range("Sum!F1")->Value(), Value(5.0));
  session->Worksheet("Data")->SetName("New");
  session->Calculate();
  EXPECT_EQ(session->Range("Sum!F1")->Value(), Value("gone"));
  session->Worksheet("New")->SetName("Data");
  session->Calculate();
  EXPECT_EQ(session->Range("Sum!F1")->Value(), Value(5.0));
}

// Columns that were inserted before are not followed in the parts yet.
TEST_F(RenamedSheet, FollowsAfterAnInsertionAndMayBeRenamedAgain) {
  Open(TwoSheets());
  session->Worksheet("Data")->Columns(1)->Insert(host::XlInsertShiftDirection::kToRight);
  session->Worksheet("Data")->SetName("First");
  session->Worksheet("First")->Columns(1)->Insert(host::XlInsertShiftDirection::kToRight);
  session->Worksheet("First")->SetName("Last");
  EXPECT_EQ(session->Range("Sum!A1")->Formula(), "=Last!C1*2");
  EXPECT_THAT(Part(kChart), HasSubstr("<f>Last!$C$1:$D$1</f>"));
  EXPECT_THAT(Part(kSecondSheet), HasSubstr("<formula1>Last!$C$1:$D$1</formula1>"));
  EXPECT_THAT(Part(kPivotCache), HasSubstr("ref=\"C1:D1\" sheet=\"Last\""));
}

TEST_F(RenamedSheet, IsRefusedWhereItCannotBeFollowed) {
  Parts damaged = TwoSheets();
  damaged[kChart] = "<chartSpace><f>Data!A1";
  Open(damaged);
  const auto refusal = [&](const char* sheet, const char* name) {
    try {
      session->Worksheet(sheet)->SetName(name);
    } catch (const HostError& error) {
      EXPECT_EQ(error.number(), HostError::kApplicationDefined);
      return error.description();
    }
    return std::string("not refused");
  };
  EXPECT_THAT(refusal("Data", "New"),
              AllOf(HasSubstr("\"Data\" can't be named \"New\""), HasSubstr(kChart)));
  EXPECT_EQ(session->Range("Sum!A1")->Formula(), "=Data!A1*2");

  Parts locked = TwoSheets();
  std::string& workbook = locked[kWorkbookPart];
  workbook.insert(workbook.find("<sheets>"), "<workbookProtection lockStructure=\"1\"/>");
  Open(locked);
  EXPECT_THAT(refusal("Data", "New"), HasSubstr("structure"));
  EXPECT_THAT(refusal("Data", "sum"), HasSubstr("another sheet"));
  const host::SheetsPtr sheets = session->application()->ActiveWorkbook()->Sheets();
  EXPECT_THROW(sheets->Add(sheets->Item(1)), HostError);
  EXPECT_EQ(sheets->Count(), 2);
}

TEST_F(RenamedSheet, RealWorkbooksCalculateAsBeforeAndNameNoOldSheet) {
  const auto workbooks = ModelWorkbooks();
  if (workbooks.empty()) GTEST_SKIP() << "the realistic workbooks are not beside the checkout";
  for (const auto& path : workbooks) {
    SCOPED_TRACE(path);
    session = Session::Open(path);
    if (session->file().model().structure_is_protected) continue;
    const Recalculation before = session->RecalculateAll();
    std::vector<std::string> old_names;
    for (const auto& sheet : session->application()->ActiveWorkbook()->Worksheets()) {
      old_names.push_back(sheet->Name());
      sheet->SetName("New name " + std::to_string(old_names.size()));
    }
    session->Save(Path("renamed.xlsx"));
    const auto again = Session::Open(Path("renamed.xlsx"));
    const Recalculation after = again->RecalculateAll();
    EXPECT_EQ(after.formulas, before.formulas);
    EXPECT_EQ(after.differences.size(), 0u);
    EXPECT_EQ(after.uncalculated.size(), before.uncalculated.size());
    OpcPackage& package = again->file().package();
    for (const std::string& part : package.PartNames()) {
      if (!part.ends_with(".xml") || part.ends_with("sharedStrings.xml")) continue;
      // Excel makes the list of titles there anew.
      if (part == "docProps/app.xml") continue;
      const std::string text = package.Read(part);
      for (const std::string& name : old_names) {
        for (const std::string& prefix : {">" + name + "!", "\"" + name + "!", "'" + name + "'!"}) {
          EXPECT_EQ(text.find(prefix), std::string::npos) << part << " names " << prefix;
        }
      }
    }
  }
}

}  // namespace
}  // namespace vantora::embedded
