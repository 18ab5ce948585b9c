#include "cli/small_model.h"

#include <zip.h>

#include <algorithm>
#include <fstream>
#include <stdexcept>

#include "cli/command.h"

namespace vantora::testing {
namespace {

namespace fs = std::filesystem;

constexpr char kXml[] = R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
)";
constexpr char kMain[] = R"(xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main")";
constexpr char kOffice[] = "http://schemas.openxmlformats.org/officeDocument/2006/relationships";
constexpr char kPackage[] = "http://schemas.openxmlformats.org/package/2006/";

std::string Number(const std::string& cell, int value) {
  return "<c r=\"" + cell + "\"><v>" + std::to_string(value) + "</v></c>";
}

std::string Text(const std::string& cell, const std::string& text) {
  return "<c r=\"" + cell + "\" t=\"inlineStr\"><is><t>" + text + "</t></is></c>";
}

std::string FormulaCell(const std::string& cell, const std::string& formula, int value) {
  return "<c r=\"" + cell + "\"><f>" + formula + "</f><v>" + std::to_string(value) + "</v></c>";
}

std::string Row(int number, const std::string& cells) {
  return "<row r=\"" + std::to_string(number) + "\">" + cells + "</row>";
}

std::string Sheet(const std::string& rows) {
  return std::string(kXml) + "<worksheet " + kMain + "><sheetData>" + rows +
         "</sheetData></worksheet>";
}

std::string PlanningSheet() {
  std::string years;
  for (int i = 0; i < 5; ++i)
    years += Number(std::string(1, static_cast<char>('B' + i)) + "2", 2021 + i);
  return Sheet(Row(2, years) + Row(5, FormulaCell("C5", "SUM('Data 01'!J3:O3)", 21) +
                                          FormulaCell("D5", "WEBSERVICE('Data 01'!N3)", 5)));
}

std::string DataSheet() {
  std::string numbers;
  std::string texts;
  for (int i = 0; i < 6; ++i) {
    const std::string column(1, static_cast<char>('J' + i));
    numbers += Number(column + "3", i + 1);
    texts += Text(column + "4", std::string(1, static_cast<char>('a' + i)));
  }
  return Sheet(Row(1, Text("A1", "S") + Text("AA1", "k")) +
               Row(3, numbers + FormulaCell("P3", "O3*2", 12)) + Row(4, texts));
}

std::string Relationship(int id, const std::string& type, const std::string& target) {
  return "<Relationship Id=\"rId" + std::to_string(id) + "\" Type=\"" + kOffice + "/" + type +
         "\" Target=\"" + target + "\"/>";
}

std::string Relationships(const std::string& entries) {
  return std::string(kXml) + "<Relationships xmlns=\"" + kPackage + "relationships\">" + entries +
         "</Relationships>";
}

std::string ContentTypes() {
  constexpr char kSheetMl[] = "application/vnd.openxmlformats-officedocument.spreadsheetml.";
  const auto part = [](const std::string& name, const std::string& type) {
    return "<Override PartName=\"/xl/" + name + "\" ContentType=\"" + type + "+xml\"/>";
  };
  return std::string(kXml) + "<Types xmlns=\"" + kPackage + "content-types\">" +
         "<Default Extension=\"rels\" "
         "ContentType=\"application/vnd.openxmlformats-package.relationships+xml\"/>" +
         part("workbook.xml", "application/vnd.ms-excel.sheet.macroEnabled.main") +
         part("worksheets/sheet1.xml", std::string(kSheetMl) + "worksheet") +
         part("worksheets/sheet2.xml", std::string(kSheetMl) + "worksheet") +
         part("styles.xml", std::string(kSheetMl) + "styles") + "</Types>";
}

std::string WorkbookXml() {
  return std::string(kXml) + "<workbook " + kMain + " xmlns:r=\"" + kOffice +
         "\"><bookViews><workbookView/></bookViews><sheets>" +
         "<sheet name=\"Planning\" sheetId=\"1\" r:id=\"rId1\"/>" +
         "<sheet name=\"Data 01\" sheetId=\"2\" r:id=\"rId2\"/></sheets><definedNames>" +
         "<definedName name=\"marker\">'Data 01'!$AA$1</definedName>" +
         "<definedName name=\"planning_fiscal_year\">Planning!$B$2:$F$2</definedName>" +
         "</definedNames></workbook>";
}

std::string StylesXml() {
  return std::string(kXml) + "<styleSheet " + kMain +
         "><fonts count=\"1\"><font><sz val=\"11\"/><name val=\"Calibri\"/></font></fonts>"
         "<fills count=\"2\"><fill><patternFill patternType=\"none\"/></fill>"
         "<fill><patternFill patternType=\"gray125\"/></fill></fills>"
         "<borders count=\"1\"><border><left/><right/><top/><bottom/><diagonal/></border></borders>"
         "<cellStyleXfs count=\"1\"><xf numFmtId=\"0\" fontId=\"0\" fillId=\"0\" borderId=\"0\"/>"
         "</cellStyleXfs><cellXfs count=\"1\"><xf numFmtId=\"0\" fontId=\"0\" fillId=\"0\" "
         "borderId=\"0\" xfId=\"0\"/></cellXfs></styleSheet>";
}

}  // namespace

void WriteSmallModel(const fs::path& path) {
  const std::vector<std::pair<std::string, std::string>> parts = {
      {"[Content_Types].xml", ContentTypes()},
      {"_rels/.rels", Relationships(Relationship(1, "officeDocument", "xl/workbook.xml"))},
      {"xl/workbook.xml", WorkbookXml()},
      {"xl/_rels/workbook.xml.rels",
       Relationships(Relationship(1, "worksheet", "worksheets/sheet1.xml") +
                     Relationship(2, "worksheet", "worksheets/sheet2.xml") +
                     Relationship(3, "styles", "styles.xml"))},
      {"xl/worksheets/sheet1.xml", PlanningSheet()},
      {"xl/worksheets/sheet2.xml", DataSheet()},
      {"xl/styles.xml", StylesXml()},
  };
  zip_t* archive = zip_open(path.c_str(), ZIP_CREATE | ZIP_TRUNCATE, nullptr);
  if (archive == nullptr) throw std::runtime_error("the test's model can't be written");
  for (const auto& [name, text] : parts) {
    zip_source_t* source = zip_source_buffer(archive, text.data(), text.size(), 0);
    if (zip_file_add(archive, name.c_str(), source, ZIP_FL_ENC_UTF_8) < 0) zip_source_free(source);
  }
  if (zip_close(archive) != 0) throw std::runtime_error("the test's model can't be written");
}

std::string BytesOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

SmallModel::SmallModel() {
  WriteSmallModel(path());
  bytes_ = BytesOf(path());
}

std::string SmallModel::Files() const {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder_.path())) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  std::string list;
  for (const std::string& name : names) list += name + " ";
  return list;
}

CommandResult SmallModel::Run(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), {"run", path().string()});
  return Command(arguments);
}

CommandResult SmallModel::Command(const std::vector<std::string>& arguments) {
  std::istringstream in(typed);
  std::ostringstream out;
  std::ostringstream err;
  FixedClock clock;
  NoFileVersions file_versions;
  cli::Environment environment{.in = in,
                               .out = out,
                               .err = err,
                               .clock = clock,
                               .file_versions = file_versions,
                               .interactive = interactive,
                               .shows_progress = shows_progress,
                               .wrap_application = wrap_application};
  CommandResult result;
  result.exit_code = cli::RunCommand(arguments, environment);
  result.out = out.str();
  result.err = err.str();
  return result;
}

Value CellOf(const fs::path& path, const std::string& reference) {
  return embedded::Session::Open(path)->Range(reference)->Value();
}

}  // namespace vantora::testing
