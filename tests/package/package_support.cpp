#include "package/package_support.h"

#include <zip.h>

#include "package/xml_scanner.h"

namespace vantora::embedded {
namespace {

constexpr std::string_view kMain = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";
constexpr std::string_view kOffice =
    "http://schemas.openxmlformats.org/officeDocument/2006/relationships";
constexpr std::string_view kRelationships =
    "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">";

std::string Root(std::string_view name, std::string_view content) {
  std::string text = "<?xml version=\"1.0\"?><" + std::string(name) + " xmlns=\"" +
                     std::string(kMain) + "\" xmlns:r=\"" + std::string(kOffice) + "\">";
  return text + std::string(content) + "</" + std::string(name) + ">";
}

std::string RelationshipText(std::string_view id, std::string_view kind, std::string_view target) {
  return "<Relationship Id=\"" + std::string(id) + "\" Type=\"" + std::string(kOffice) + "/" +
         std::string(kind) + "\" Target=\"" + std::string(target) + "\"/>";
}

}  // namespace

std::filesystem::path PackageTest::WriteZipFile(const std::string& name, const Parts& parts) const {
  std::filesystem::path path = Path(name);
  int error = 0;
  zip_t* zip = zip_open(path.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &error);
  for (const auto& [part, text] : parts) {
    zip_source_t* source = zip_source_buffer(zip, text.data(), text.size(), 0);
    zip_file_add(zip, part.c_str(), source, ZIP_FL_ENC_UTF_8);
  }
  EXPECT_EQ(zip_close(zip), 0) << zip_strerror(zip);
  return path;
}

std::unique_ptr<WorkbookFile> PackageTest::OpenParts(const Parts& parts) const {
  return WorkbookFile::Open(WriteZipFile("book.xlsx", parts));
}

std::string PackageTest::Saved(WorkbookFile& file, const std::string& part) const {
  file.Save(Path("saved.xlsx"));
  std::unique_ptr<OpcPackage> package = OpcPackage::Open(Path("saved.xlsx"));
  return package->Has(part) ? package->Read(part) : "";
}

Parts OneSheet(std::string_view sheet_content) { return OneSheet(sheet_content, ""); }

Parts OneSheet(std::string_view sheet_content, std::string_view workbook_content) {
  Parts parts;
  parts["[Content_Types].xml"] =
      "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\"><Default "
      "Extension=\"rels\" "
      "ContentType=\"application/vnd.openxmlformats-package.relationships+xml\"/>"
      "<Default Extension=\"xml\" ContentType=\"application/xml\"/><Override "
      "PartName=\"/xl/workbook.xml\" ContentType=\"application/vnd.openxmlformats-officedocument."
      "spreadsheetml.sheet.main+xml\"/></Types>";
  parts["_rels/.rels"] = std::string(kRelationships) +
                         RelationshipText("rId1", "officeDocument", "xl/workbook.xml") +
                         "</Relationships>";
  parts[kWorkbookPart] =
      Root("workbook", "<sheets><sheet name=\"Data\" sheetId=\"1\" r:id=\"rId1\"/></sheets>" +
                           std::string(workbook_content));
  parts["xl/_rels/workbook.xml.rels"] =
      std::string(kRelationships) + RelationshipText("rId1", "worksheet", "worksheets/sheet1.xml") +
      "</Relationships>";
  parts[kSheetPart] = Root("worksheet", sheet_content);
  return parts;
}

void AddWorkbookPart(Parts& parts, const std::string& kind, const std::string& name,
                     const std::string& text) {
  parts["xl/" + name] = text;
  std::string& relationships = parts["xl/_rels/workbook.xml.rels"];
  relationships.insert(relationships.find("</Relationships>"),
                       RelationshipText("rId" + kind, kind, name));
}

void AddSharedStrings(Parts& parts, std::string_view items) {
  AddWorkbookPart(parts, "sharedStrings", "sharedStrings.xml", Root("sst", items));
}

std::string SheetData(std::string_view sheet) {
  std::size_t begin = sheet.find("<sheetData>") + 11;
  return std::string(sheet.substr(begin, sheet.find("</sheetData>") - begin));
}

std::map<std::string, std::string> SheetElements(std::string_view sheet) {
  std::map<std::string, std::string> elements;
  XmlScanner xml(sheet);
  int number = 0;
  while (xml.Next() != XmlScanner::Token::kDone) {
    if (xml.token() != XmlScanner::Token::kStart || xml.depth() == 0) continue;
    std::string name(xml.local_name());
    if (name == "sheetData") continue;
    std::string key = name == "c" || name == "row" ? name + std::string(*xml.Attribute("r"))
                                                   : name + "#" + std::to_string(number++);
    std::size_t begin = xml.begin();
    if (name != "row") xml.SkipElement();
    elements[key] = sheet.substr(begin, xml.end() - begin);
  }
  return elements;
}

std::vector<std::string> Differences(const std::map<std::string, std::string>& a,
                                     const std::map<std::string, std::string>& b) {
  std::vector<std::string> keys;
  for (const auto& [key, text] : a) {
    auto other = b.find(key);
    if (other == b.end() || other->second != text) keys.push_back(key);
  }
  for (const auto& [key, text] : b) {
    if (!a.contains(key)) keys.push_back(key);
  }
  return keys;
}

std::vector<std::filesystem::path> ModelWorkbooks() {
  std::vector<std::filesystem::path> workbooks;
  std::filesystem::path folder = std::filesystem::path(VANTORA_SOURCE_DIR) / "../shared/models";
  if (!std::filesystem::exists(folder)) return workbooks;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    std::string extension = entry.path().extension().string();
    if (extension == ".xlsx" || extension == ".xlsm") workbooks.push_back(entry.path());
  }
  return workbooks;
}

}  // namespace vantora::embedded
