// Workbooks that other programs write, or that hold what operations know nothing of: they open, can
// be edited, and keep what the edit does not concern byte for byte.
#include <gmock/gmock.h>

#include <functional>

#include "host/session.h"
#include "package/package_support.h"

namespace vantora::embedded {
namespace {

using ::testing::HasSubstr;

constexpr char kRow[] = "<sheetData><row r=\"1\"><c r=\"B1\"><v>7</v></c></row></sheetData>";
constexpr char kRelationshipsOfSheet[] = "xl/worksheets/_rels/sheet1.xml.rels";

void ReplaceAll(std::string& text, std::string_view from, std::string_view to) {
  for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
    text.replace(at, from.size(), to);
  }
}

// Relationships of the sheet's, one to each part, which is added.
void Relate(Parts& parts, const std::vector<std::pair<std::string, std::string>>& targets) {
  std::string text = "<Relationships>";
  for (const auto& [kind, part] : targets) {
    text += "<Relationship Id=\"r" + kind + "\" Type=\"http://x/" + kind + "\" Target=\"/" + part +
            "\"/>";
    parts[part] = "<" + kind + " unknown='kept'><a/></" + kind + " >";
  }
  parts[kRelationshipsOfSheet] = text + "</Relationships>";
}

void AddSheet(Parts& parts, const std::string& kind, const std::string& text) {
  AddWorkbookPart(parts, kind, kind + "/sheet9.xml", text);
  ReplaceAll(parts[kWorkbookPart], "</sheets>",
             "<sheet name=\"Other\" sheetId=\"9\" r:id=\"rId" + kind + "\"/></sheets>");
}

struct OddFile {
  const char* name;
  std::function<void(Parts&)> change;
  // Parts that the edit does not concern.
  std::vector<std::string> kept = {};
};

std::vector<OddFile> OddFiles() {
  return {
      {"a sheet without data", [](Parts& p) { ReplaceAll(p[kSheetPart], kRow, "<sheetPr/>"); }},
      {"a chart sheet",
       [](Parts& p) { AddSheet(p, "chartsheet", "<chartsheet><sheetViews/></chartsheet>"); },
       {"xl/chartsheet/sheet9.xml"}},
      {"a dialog sheet",
       [](Parts& p) { AddSheet(p, "dialogsheet", "<dialogsheet><sheetPr/></dialogsheet>"); },
       {"xl/dialogsheet/sheet9.xml"}},
      {"a macro sheet",
       [](Parts& p) {
         AddSheet(p, "xlMacrosheet",
                  "<xm:macrosheet xmlns:xm=\"m\"><sheetData><row r=\"1\"><c r=\"A1\"><f>HALT()</f>"
                  "</c></row></sheetData></xm:macrosheet>");
       },
       {"xl/xlMacrosheet/sheet9.xml"}},
      {"links to other workbooks",
       [](Parts& p) {
         AddWorkbookPart(p, "externalLink", "externalLinks/externalLink1.xml",
                         "<externalLink><externalBook r:id='rId1'/></externalLink>");
         p["xl/externalLinks/_rels/externalLink1.xml.rels"] =
             "<Relationships><Relationship Id=\"rId1\" Type=\"t/externalLinkPath\" "
             "Target=\"file:///C:/else.xlsx\" TargetMode=\"External\"/></Relationships>";
         ReplaceAll(p[kSheetPart], "<v>7</v>", "<f>[1]Data!A1</f><v>7</v>");
       },
       {"xl/externalLinks/externalLink1.xml", "xl/externalLinks/_rels/externalLink1.xml.rels"}},
      {"slicers, threaded comments and printer settings",
       [](Parts& p) {
         Relate(p, {{"slicer", "xl/slicers/slicer1.xml"},
                    {"threadedComment", "xl/threadedComments/threadedComment1.xml"},
                    {"printerSettings", "xl/printerSettings/printerSettings1.bin"}});
       },
       {"xl/slicers/slicer1.xml", "xl/threadedComments/threadedComment1.xml",
        "xl/printerSettings/printerSettings1.bin", kRelationshipsOfSheet}},
      {"a pivot table right of the data",
       [](Parts& p) {
         Relate(p, {{"pivotTable", "xl/pivotTables/pivotTable1.xml"}});
         p["xl/pivotTables/pivotTable1.xml"] =
             "<pivotTableDefinition><location ref=\"H1:J5\" firstHeaderRow=\"1\"/>"
             "</pivotTableDefinition>";
       }},
      {"a pivot table whose records are missing, and its cache",
       [](Parts& p) {
         AddWorkbookPart(p, "pivotCacheDefinition", "pivotCache/pivotCacheDefinition1.xml",
                         "<pivotCacheDefinition r:id='rId1'><cacheSource type='worksheet'>"
                         "<worksheetSource ref='H1:J5' sheet='Data'/></cacheSource>"
                         "</pivotCacheDefinition>");
         ReplaceAll(p[kWorkbookPart], "</sheets>",
                    "</sheets><pivotCaches><pivotCache cacheId='1' "
                    "r:id='rIdpivotCacheDefinition'/></pivotCaches>");
         p["xl/pivotCache/_rels/pivotCacheDefinition1.xml.rels"] =
             "<Relationships><Relationship Id='rId1' Type='t/pivotCacheRecords' "
             "Target='gone.xml'/></Relationships>";
       },
       {"xl/pivotCache/_rels/pivotCacheDefinition1.xml.rels"}},
      {"a table",
       [](Parts& p) {
         Relate(p, {{"table", "xl/tables/table1.xml"}});
         p["xl/tables/table1.xml"] =
             "<table id=\"1\" name=\"T\" displayName=\"T\" ref=\"E1:E3\"><tableColumns "
             "count=\"1\"><tableColumn id=\"1\" name=\"Head\"/></tableColumns></table>";
         ReplaceAll(p[kSheetPart], "</c></row>",
                    "</c><c r=\"E1\" t=\"inlineStr\"><is><t>Head</t></is></c></row>");
       }},
      {"parts that relationships promise and the package lacks",
       [](Parts& p) {
         for (const char* kind : {"styles", "theme", "sharedStrings", "calcChain"}) {
           AddWorkbookPart(p, kind, std::string(kind) + ".xml", "");
           p.erase("xl/" + std::string(kind) + ".xml");
         }
       },
       {"xl/_rels/workbook.xml.rels"}},
      {"relationships to what no part can be named",
       [](Parts& p) {
         AddWorkbookPart(p, "styles", "styles.xml", "");
         AddWorkbookPart(p, "sharedStrings", "strings.xml", "");
         for (const char* name : {"styles.xml", "strings.xml"}) {
           ReplaceAll(p["xl/_rels/workbook.xml.rels"], name, "a:" + std::string(name));
         }
         p.erase("xl/styles.xml");
         p.erase("xl/strings.xml");
       }},
      {"the strict form",
       [](Parts& p) {
         for (auto& [part, text] : p) {
           ReplaceAll(text, "http://schemas.openxmlformats.org/spreadsheetml/2006/main",
                      "http://purl.oclc.org/ooxml/spreadsheetml/main");
           ReplaceAll(text, "http://schemas.openxmlformats.org/officeDocument/2006/relationships",
                      "http://purl.oclc.org/ooxml/officeDocument/relationships");
         }
       }},
      {"names with prefixes",
       [](Parts& p) {
         for (const char* part : {kSheetPart, kWorkbookPart}) {
           std::string& text = p[part];
           for (std::string_view tag : {"worksheet", "workbook", "sheets", "sheet ", "sheetData",
                                        "row", "c ", "c>", "v"}) {
             ReplaceAll(text, "<" + std::string(tag), "<x:" + std::string(tag));
             ReplaceAll(text, "</" + std::string(tag), "</x:" + std::string(tag));
           }
           for (std::string_view twice : {"<x:x:", "</x:x:"}) {
             ReplaceAll(text, twice, twice.substr(0, twice.size() - 2));
           }
           ReplaceAll(text, "xmlns=", "xmlns:x=");
         }
       }},
      {"names with prefixes, the strict form and absolute targets at once",
       [](Parts& p) {
         p[kSheetPart] =
             "<s:worksheet xmlns:s='http://purl.oclc.org/ooxml/spreadsheetml/main'>"
             "<s:sheetData><s:row r='1'><s:c r='B1' s='0' t='n'><s:v>7</s:v></s:c></s:row>"
             "</s:sheetData></s:worksheet>";
         p[kWorkbookPart] =
             "<?xml version='1.0' encoding='utf-8' standalone='no'?><b:workbook "
             "xmlns:b='http://purl.oclc.org/ooxml/spreadsheetml/main' "
             "xmlns:q='http://purl.oclc.org/ooxml/officeDocument/relationships' "
             "conformance='strict'><b:sheets><b:sheet name='Data' sheetId='1' q:id='rId1'/>"
             "</b:sheets></b:workbook>";
         ReplaceAll(p["xl/_rels/workbook.xml.rels"],
                    "http://schemas.openxmlformats.org/officeDocument/2006/relationships",
                    "http://purl.oclc.org/ooxml/officeDocument/relationships");
         ReplaceAll(p["xl/_rels/workbook.xml.rels"], "\"worksheets/", "\"/xl/worksheets/");
         ReplaceAll(p["_rels/.rels"],
                    "http://schemas.openxmlformats.org/officeDocument/2006/relationships",
                    "http://purl.oclc.org/ooxml/officeDocument/relationships");
       }},
      {"parts in UTF-16",
       [](Parts& p) {
         for (const char* part : {kSheetPart, kWorkbookPart}) {
           ReplaceAll(p[part], "1.0\"?>", "1.0\" encoding=\"UTF-16\"?>");
           std::string wide = "\xFF\xFE";
           for (char c : p[part]) wide += {c, '\0'};
           p[part] = wide;
         }
       }},
      {"a sheet's part of another name",
       [](Parts& p) {
         ReplaceAll(p["xl/_rels/workbook.xml.rels"], "worksheets/sheet1.xml", "one.part");
         ReplaceAll(p["[Content_Types].xml"], "</Types>",
                    "<Default Extension=\"part\" ContentType=\"application/xml\"/></Types>");
         p["xl/one.part"] = p[kSheetPart];
         p.erase(kSheetPart);
       },
       {kWorkbookPart}},
      {"declarations, instructions, comments and CDATA",
       [](Parts& p) {
         ReplaceAll(p[kSheetPart], "<sheetData>",
                    "<!-- <a> & --><?x y?><extra a='>'><![CDATA[<&]]></extra><sheetData>");
         p[kSheetPart] += "\n<!-- after --><?x?>\n";
       }},
      {"no places of rows and cells",
       [](Parts& p) {
         ReplaceAll(p[kSheetPart], kRow,
                    "<sheetData><row><c t=\"inlineStr\"><is><t>a</t></is></c><c><v>7</v></c></row>"
                    "</sheetData>");
       }},
      {"absolute targets",
       [](Parts& p) {
         ReplaceAll(p["xl/_rels/workbook.xml.rels"], "\"worksheets/", "\"/xl/worksheets/");
         ReplaceAll(p["_rels/.rels"], "\"xl/", "\"/xl/");
       }},
      {"byte order marks",
       [](Parts& p) {
         for (auto& [part, text] : p) text = "\xEF\xBB\xBF" + text;
       },
       {"_rels/.rels", kWorkbookPart}},
      {"formats out of range",
       [](Parts& p) { ReplaceAll(p[kSheetPart], "<c r=", "<c s=\"4000000000\" r="); }},
      {"unknown elements and alternatives",
       [](Parts& p) {
         ReplaceAll(p[kSheetPart], "</sheetData>",
                    "</sheetData><mc:AlternateContent xmlns:mc=\"m\"><mc:Choice Requires=\"q\">"
                    "<q:controls xmlns:q=\"q\"/></mc:Choice></mc:AlternateContent><what><ever/>"
                    "</what><extLst><ext uri=\"{u}\"/></extLst>");
       }},
      {"formulas and names that say nothing",
       [](Parts& p) {
         ReplaceAll(p[kSheetPart], "<v>7</v>", "<f>((&#9;A1:+*\"</f><v>7</v>");
         ReplaceAll(p[kWorkbookPart], "</sheets>",
                    "</sheets><definedNames><definedName name=\"n\">((</definedName><definedName "
                    "name=\"n\">#REF!</definedName><definedName/></definedNames>");
       }},
  };
}

class OddFilesTest : public PackageTest {
 protected:
  static std::map<std::string, std::string> BytesOfParts(const std::filesystem::path& path) {
    const ZipArchive archive(path);
    std::map<std::string, std::string> parts;
    for (std::size_t i = 0; i < archive.entries().size(); ++i) {
      parts[archive.entries()[i].name] = archive.Read(i);
    }
    return parts;
  }
};

TEST_F(OddFilesTest, OpenTakeAnEditAndKeepTheRest) {
  for (const OddFile& odd : OddFiles()) {
    SCOPED_TRACE(odd.name);
    Parts parts = OneSheet(kRow);
    parts["xl/unknown.bin"] = std::string("\0\xFF what no program knows", 24);
    odd.change(parts);
    const std::filesystem::path path = WriteZipFile("odd.xlsx", parts);
    const std::filesystem::path saved = Path("saved.xlsx");

    auto session = Session::Open(path);
    const bool has_seven = session->file().model().sheets[0]->cells.Get({1, 2}).value.number == 7;
    if (parts.contains(kSheetPart) && parts[kSheetPart].find("7</") != std::string::npos) {
      EXPECT_TRUE(has_seven);
    }
    session->Save(saved);
    EXPECT_EQ(BytesOfParts(saved), BytesOfParts(path));
    session->Range("Data!A2")->SetValue(Value(1.5));
    session->Range("Data!A3")->SetValue(Value("text"));
    session->Worksheet("Data")->Columns(2)->Insert(host::XlInsertShiftDirection::kToRight);
    session->Save(saved);
    auto package = OpcPackage::Open(saved);
    for (const auto& [part, text] : parts) EXPECT_TRUE(package->Has(part)) << part;
    for (const std::string& part : odd.kept) EXPECT_EQ(package->Read(part), parts[part]) << part;
    EXPECT_EQ(package->Read("xl/unknown.bin"), parts["xl/unknown.bin"]);
    if (parts[kSheetPart].find("<what>") != std::string::npos) {
      EXPECT_THAT(package->Read(kSheetPart), HasSubstr("<what><ever/></what>"));
    }
    const auto file = WorkbookFile::Open(saved);
    const WorkbookModel& model = file->model();
    EXPECT_EQ(model.sheets[0]->cells.Get({2, 1}).value.number, 1.5);
    EXPECT_EQ(model.strings[model.sheets[0]->cells.Get({3, 1}).value.text], "text");
    if (has_seven) {
      EXPECT_EQ(model.sheets[0]->cells.Get({1, 3}).value.number, 7);
    }
  }
}

}  // namespace
}  // namespace vantora::embedded
