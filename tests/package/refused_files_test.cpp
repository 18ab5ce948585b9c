// Files that can't be opened, and the error that each gives: docs/file-errors.md lists them, and is
// what they are compared with.
#include <gmock/gmock.h>

#include <fstream>
#include <functional>

#include "package/file_limits.h"
#include "package/package_support.h"
#include "package/sheet_reader.h"

namespace vantora::embedded {
namespace {

using ::testing::HasSubstr;

constexpr char kTypes[] = "[Content_Types].xml";
constexpr char kNoise[] = "xl/media/noise.bin";
constexpr char kWorkbookType[] = "vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml";
// Places in an archive's entry of its directory.
constexpr std::size_t kFlags = 8;
constexpr std::size_t kMethod = 10;
constexpr std::size_t kUnpackedSize = 24;

std::string FileBytes(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

void ReplaceAll(std::string& text, std::string_view from, std::string_view to) {
  ASSERT_NE(text.find(from), std::string::npos) << from;
  for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
    text.replace(at, from.size(), to);
  }
}

std::string Repeated(std::string_view text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

// Writes a little-endian number into the directory's entry of the part.
void PatchDirectory(std::string& bytes, std::string_view part, std::size_t field,
                    std::uint64_t number, int length) {
  std::size_t at = bytes.rfind(part);
  ASSERT_NE(at, std::string::npos);
  at -= 46 - field;
  for (int i = 0; i < length; ++i) bytes[at + i] = static_cast<char>(number >> (8 * i));
}

std::string CompoundFile(std::string_view stream) {
  std::string bytes = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1" + std::string(70000, '\0');
  for (char c : stream) bytes += {c, '\0'};
  return bytes;
}

struct RefusedFile {
  const char* name;
  std::function<void(Parts&)> parts = {};
  // Of the archive, once it is written.
  std::function<void(std::string&)> bytes = {};
};

std::function<void(Parts&)> Sheet(const std::string& content) {
  return [content](Parts& parts) { parts[kSheetPart] = OneSheet(content)[kSheetPart]; };
}

// A sheet with one row of this content.
std::function<void(Parts&)> Row(const std::string& content) {
  return Sheet("<sheetData><row>" + content + "</row></sheetData>");
}

std::function<void(Parts&)> Replace(const char* part, const char* from, const char* to) {
  return [=](Parts& parts) { ReplaceAll(parts[part], from, to); };
}

std::function<void(Parts&)> Add(const char* part) {
  return [=](Parts& parts) { parts[part] = "<x/>"; };
}

std::function<void(Parts&)> Erase(const char* part) {
  return [=](Parts& parts) { parts.erase(part); };
}

std::function<void(std::string&)> File(const std::string& content) {
  return [content](std::string& bytes) { bytes = content; };
}

std::vector<RefusedFile> RefusedArchives() {
  return {
      {"an empty file", {}, File("")},
      {"a text file", {}, File("a,b,c")},
      {"a workbook of before 2007 (.xls)", {}, File(CompoundFile("Workbook"))},
      {"a workbook with a password", {}, File(CompoundFile("EncryptedPackage"))},
      {"cut in half", {}, [](std::string& bytes) { bytes.resize(bytes.size() / 2); }},
      {"without its directory", {}, [](std::string& bytes) { bytes.resize(bytes.find("PK\1\2")); }},
      {"a sheet with a wrong checksum",
       {},
       [](std::string& bytes) { PatchDirectory(bytes, kSheetPart, 16, 1, 4); }},
      {"an entry with a password",
       {},
       [](std::string& bytes) { PatchDirectory(bytes, kNoise, kFlags, 1, 2); }},
      {"an entry compressed otherwise",
       {},
       [](std::string& bytes) { PatchDirectory(bytes, kNoise, kMethod, 12, 2); }},
      {"two parts of one name",
       [](Parts& parts) { parts["xl/a.xml"] = parts["xl/b.xml"] = "<x/>"; },
       [](std::string& bytes) { ReplaceAll(bytes, "xl/b.xml", "xl/a.xml"); }},
      {"names that differ in case", Add("XL/Workbook.xml")},
      {"an absolute name", Add("/xl/evil.xml")},
      {"a name with a drive", Add("C:/evil.xml")},
      {"a climbing name", Add("xl/../../evil.xml")},
      {"a name that climbs by backslashes", Add("xl\\..\\..\\evil.xml")},
      {"an entry of another size than it claims",
       {},
       [](std::string& bytes) { PatchDirectory(bytes, kNoise, kUnpackedSize, 100, 4); }},
      {"an entry that claims 2 gigabytes",
       {},
       [](std::string& bytes) { PatchDirectory(bytes, kSheetPart, kUnpackedSize, 1u << 31, 4); }},
      {"an entry that claims to have shrunk ten thousandfold",
       [](Parts& parts) { parts["xl/big.xml"] = std::string(20000, ' '); },
       [](std::string& bytes) {
         PatchDirectory(bytes, "xl/big.xml", kUnpackedSize, 100 << 20, 4);
       }},
      {"entries that together claim too much",
       [](Parts& parts) {
         for (char c : {'1', '2', '3'}) {
           parts[std::string("xl/big") + c + ".xml"] = std::string(20000, ' ');
         }
       },
       [](std::string& bytes) {
         for (const char* part : {"xl/big1.xml", "xl/big2.xml", "xl/big3.xml"}) {
           PatchDirectory(bytes, part, kUnpackedSize, 60 << 20, 4);
         }
       }},
  };
}

std::vector<RefusedFile> RefusedPackages() {
  return {
      {"no content types", Erase(kTypes)},
      {"a binary workbook (.xlsb)",
       Replace(kTypes, kWorkbookType, "vnd.ms-excel.sheet.binary.macroEnabled.main")},
      {"an add-in (.xlam)",
       Replace(kTypes, kWorkbookType, "vnd.ms-excel.addin.macroEnabled.main+xml")},
      {"a text document",
       Replace(kTypes, kWorkbookType,
               "vnd.openxmlformats-officedocument.wordprocessingml.document.main+xml")},
      {"no relationships of the package", Erase("_rels/.rels")},
      {"no workbook part", Erase(kWorkbookPart)},
      {"no relationships of the workbook", Erase("xl/_rels/workbook.xml.rels")},
      {"no sheet part", Erase(kSheetPart)},
      {"a sheet outside of the package",
       Replace("xl/_rels/workbook.xml.rels", "Target=", "TargetMode=\"External\" Target=")},
      {"a sheet above the package",
       Replace("xl/_rels/workbook.xml.rels", "worksheets/", "../../../worksheets/evil/")},
      {"malformed content types", Replace(kTypes, "</Types>", "")},
      {"malformed relationships", Replace("_rels/.rels", "Target=", "Target")},
      {"a malformed workbook", Replace(kWorkbookPart, "</sheets>", "")},
      {"a malformed sheet", Sheet("<sheetData><row></sheetData>")},
      {"text behind the sheet's end", [](Parts& parts) { parts[kSheetPart] += "more"; }},
      {"an empty sheet part", [](Parts& parts) { parts[kSheetPart].clear(); }},
      {"a sheet that is cut off",
       [](Parts& parts) { parts[kSheetPart].resize(parts[kSheetPart].size() - 5); }},
      {"bytes that are no UTF-8", Row("<c t=\"str\"><v>caf\xE9</v></c>")},
      {"another encoding", Replace(kSheetPart, "1.0\"?>", "1.0\" encoding=\"ISO-8859-1\"?>")},
      {"half a character of UTF-16",
       [](Parts& parts) { parts[kSheetPart] = std::string("\xFF\xFE<\0x", 5); }},
      {"entities in a sheet",
       Replace(kSheetPart, "<worksheet", "<!DOCTYPE x [<!ENTITY a \"b\">]><worksheet")},
      {"entities in the workbook",
       Replace(kWorkbookPart, "<workbook", "<!DOCTYPE x [<!ENTITY a \"b\">]><workbook")},
      {"a million elements within one another, in a sheet", Sheet(Repeated("<a>", 1000000))},
      {"a million elements within one another, in the workbook",
       [](Parts& parts) { parts[kWorkbookPart] = Repeated("<a>", 1000000); }},
  };
}

std::vector<RefusedFile> RefusedContents() {
  return {
      {"another root in the workbook's part",
       [](Parts& parts) { parts[kWorkbookPart] = "<x><sheets/></x>"; }},
      {"no sheets", [](Parts& parts) { parts[kWorkbookPart] = "<workbook><sheets/></workbook>"; }},
      {"a sheet without a name", Replace(kWorkbookPart, "name=\"Data\"", "")},
      {"two sheets of one name",
       Replace(kWorkbookPart, "</sheets>", "<sheet name=\"DATA\" r:id=\"rId1\"/></sheets>")},
      {"two sheets in one part",
       Replace(kWorkbookPart, "</sheets>", "<sheet name=\"More\" r:id=\"rId1\"/></sheets>")},
      {"a name of a sheet that is missing",
       Replace(kWorkbookPart, "</sheets>",
               "</sheets><definedNames><definedName name=\"n\" localSheetId=\"7\">1"
               "</definedName></definedNames>")},
      {"a sheet without content", [](Parts& parts) { parts[kSheetPart] = "<worksheet/>"; }},
      {"cells in two places", Sheet("<sheetData/><cols/><sheetData/>")},
      {"a number with a comma", Row("<c><v>1,5</v></c>")},
      {"an infinite number", Row("<c><v>1e999</v></c>")},
      {"a text that the table lacks", Row("<c t=\"s\"><v>0</v></c>")},
      {"a negative text", Row("<c t=\"s\"><v>-1</v></c>")},
      {"a type that is not known", Row("<c t=\"q\"><v>0</v></c>")},
      {"rows out of order", Sheet("<sheetData><row r=\"2\"/><row r=\"1\"/></sheetData>")},
      {"a row below the sheet", Sheet("<sheetData><row r=\"1048577\"/></sheetData>")},
      {"a row without end", Sheet("<sheetData><row r=\"99999999999999999999\"/></sheetData>")},
      {"cells out of order", Row("<c r=\"B1\"/><c r=\"B1\"/>")},
      {"a cell of another row", Row("<c r=\"A2\"/>")},
      {"a cell right of the sheet", Row("<c r=\"XFE1\"/>")},
      {"a cell at no place", Row("<c r=\"1A\"/>")},
      {"a format that is no number", Row("<c s=\"bold\"/>")},
      {"columns out of order", Sheet("<cols><col min=\"3\" max=\"2\"/></cols><sheetData/>")},
      {"a shared formula without its text", Row("<c><f t=\"shared\" si=\"3\"/></c>")},
      {"an array formula over the whole sheet",
       Row("<c><f t=\"array\" ref=\"A1:XFD1048576\">1</f></c>")},
      {"a data table at no place", Row("<c><f t=\"dataTable\" ref=\"?\"/></c>")},
  };
}

class RefusedFilesTest : public PackageTest {
 protected:
  std::filesystem::path Write(const RefusedFile& file) const {
    Parts parts = OneSheet("<sheetData/>");
    parts[kNoise] = "0123456789abcdef";
    if (file.parts) file.parts(parts);
    const std::filesystem::path path = WriteZipFile("book.xlsx", parts);
    if (file.bytes) {
      std::string bytes = FileBytes(path);
      file.bytes(bytes);
      std::ofstream(path, std::ios::binary) << bytes;
    }
    return path;
  }
  // The line of the table in the documentation.
  static std::string Line(const std::string& name, const FileError& error) {
    return "| " + name + " | " + std::to_string(static_cast<int>(error.code())) + " | " +
           (error.part().empty() ? "" : "`" + error.part() + "`") + " | " + error.place() + " | " +
           error.what() + " |\n";
  }
};

TEST_F(RefusedFilesTest, EachGivesTheErrorThatTheDocumentationSays) {
  const std::string documented =
      FileBytes(std::filesystem::path(VANTORA_SOURCE_DIR) / "docs/file-errors.md");
  for (const auto& files : {RefusedArchives(), RefusedPackages(), RefusedContents()}) {
    for (const RefusedFile& file : files) {
      SCOPED_TRACE(file.name);
      const std::filesystem::path path = Write(file);
      const std::string before = FileBytes(path);
      try {
        WorkbookFile::Open(path);
        ADD_FAILURE() << "was opened";
      } catch (const FileError& error) {
        EXPECT_THAT(documented, HasSubstr(Line(file.name, error)));
      }
      EXPECT_EQ(FileBytes(path), before);
      EXPECT_EQ(std::distance(std::filesystem::directory_iterator(path.parent_path()), {}), 1)
          << "a file was written";
    }
  }
}

TEST_F(RefusedFilesTest, WhatIsNoFileIsNotFound) {
  for (const char* name : {"missing.xlsx", "."}) {
    try {
      WorkbookFile::Open(Path(name));
      ADD_FAILURE() << name << " was opened";
    } catch (const FileError& error) {
      EXPECT_EQ(error.code(), FileError::Code::kNotFound) << error.what();
    }
  }
}

// A few bytes of a sheet can take a thousandfold in memory: a cell makes room for 64, and one at
// the sheet's end for a list of all blocks above it.
TEST(SheetRoomTest, SheetsThatTakeTooMuchMemoryAreRefused) {
  const std::string rows[] = {
      "<row r=\"1048576\">" + Repeated("<c/>", 100) + "</row>",
      "<row>" + Repeated("<c/>", 10000) + "</row>",
      Repeated("<row ht=\"1\"/>", 200000),
      // Formulas that differ.
      [] {
        std::string row = "<row>";
        for (int i = 0; i < 9000; ++i) {
          row += "<c><f>" + std::to_string(i) + Repeated("+A1", 20) + "</f></c>";
        }
        return row + "</row>";
      }(),
  };
  for (const std::string& row : rows) {
    for (bool enough : {false, true}) {
      SCOPED_TRACE(row.substr(0, 30));
      WorkbookModel model;
      SheetModel& sheet = model.AddSheet("Data");
      SheetMarkup markup;
      SheetRoom room{.limit = enough ? kLargestModel : std::size_t{5} << 20};
      const std::string text = "<worksheet><sheetData>" + row + "</sheetData></worksheet>";
      try {
        ReadSheet(text, model, sheet, markup, room);
        EXPECT_TRUE(enough);
      } catch (const XmlError& error) {
        EXPECT_FALSE(enough);
        EXPECT_EQ(error.code(), FileError::Code::kTooLarge);
      }
    }
  }
}

}  // namespace
}  // namespace vantora::embedded
