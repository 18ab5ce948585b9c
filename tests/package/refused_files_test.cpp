// Files that can't be opened, and the error that each gives: docs/file-errors.md lists them, and is
// what they are compared with.
#include <fstream>
#include <functional>
#include <random>

#include "package/file_limits.h"
#include "package/package_support.h"
#include "package/sheet_reader.h"
#include "package/workbook_reader.h"

namespace vantora::embedded {
namespace {

constexpr char kTypes[] = "[Content_Types].xml";
constexpr char kNoise[] = "xl/media/noise.bin";
constexpr char kBookRelationships[] = "xl/_rels/workbook.xml.rels";
constexpr char kWorkbookType[] = "vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml";
// Places in an archive's entry of its directory.
constexpr std::size_t kFlags = 8;
constexpr std::size_t kMethod = 10;
constexpr std::size_t kPackedSize = 20;
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

std::string Repeated(std::string_view text, std::size_t times) {
  std::string all;
  for (std::size_t i = 0; i < times; ++i) all += text;
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

// Makes the file longer, with bytes that belong to no entry.
void Stretch(std::string& bytes, std::size_t by) {
  const std::size_t directory = bytes.find("PK\1\2");
  bytes.insert(directory, by, '\0');
  const std::size_t place_of_directory = bytes.rfind("PK\5\6") + 16;
  for (int i = 0; i < 4; ++i) {
    bytes[place_of_directory + i] = static_cast<char>((directory + by) >> (8 * i));
  }
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

std::function<void(Parts&)> Replace(const char* part, const char* from, const std::string& to) {
  return [=](Parts& parts) { ReplaceAll(parts[part], from, to); };
}

std::function<void(Parts&)> Add(const char* part) {
  return [=](Parts& parts) { parts[part] = "<x/>"; };
}

std::function<void(Parts&)> Erase(const char* part) {
  return [=](Parts& parts) { parts.erase(part); };
}

// Adds a part to which the workbook is related.
std::function<void(Parts&)> WorkbookPart(const char* kind, const std::string& text) {
  return [=](Parts& parts) { AddWorkbookPart(parts, kind, std::string(kind) + ".xml", text); };
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
      {"a name on another machine", Add("\\\\server\\evil.xml")},
      {"an entry of another size than it claims",
       {},
       [](std::string& bytes) { PatchDirectory(bytes, kNoise, kUnpackedSize, 100, 4); }},
      {"an entry that unpacks to more than it claims",
       [](Parts& parts) { parts[kSheetPart] += std::string(20000, ' '); },
       [](std::string& bytes) { PatchDirectory(bytes, kSheetPart, kUnpackedSize, 100, 4); }},
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
      {"no relationships of the workbook", Erase(kBookRelationships)},
      {"no sheet part", Erase(kSheetPart)},
      {"a sheet outside of the package",
       Replace(kBookRelationships, "Target=", "TargetMode=\"External\" Target=")},
      {"a sheet outside of the package, at the address of a part",
       Replace(kBookRelationships, "Target=\"", "TargetMode=\"External\" Target=\"xl/")},
      {"a workbook outside of the package",
       Replace("_rels/.rels", "Target=", "TargetMode=\"External\" Target=")},
      {"a sheet without its relationship", Replace(kWorkbookPart, "\"rId1\"", "\"rId7\"")},
      {"a sheet above the package",
       Replace(kBookRelationships, "worksheets/", "../../../worksheets/evil/")},
      {"malformed content types", Replace(kTypes, "</Types>", "")},
      {"malformed relationships", Replace("_rels/.rels", "Target=", "Target")},
      {"a malformed workbook", Replace(kWorkbookPart, "</sheets>", "")},
      {"a malformed sheet", Sheet("<sheetData><row></sheetData>")},
      {"malformed shared strings", WorkbookPart("sharedStrings", "<sst><si></sst>")},
      {"malformed styles", WorkbookPart("styles", "<styleSheet><fonts></styleSheet>")},
      {"a malformed theme",
       [](Parts& parts) {
         AddWorkbookPart(parts, "styles", "styles.xml", "<styleSheet/>");
         AddWorkbookPart(parts, "theme", "theme.xml", "<theme");
       }},
      {"malformed relationships of a sheet",
       [](Parts& parts) { parts["xl/worksheets/_rels/sheet1.xml.rels"] = "<Relationships>"; }},
      {"text behind the sheet's end", [](Parts& parts) { parts[kSheetPart] += "more"; }},
      {"an empty sheet part", [](Parts& parts) { parts[kSheetPart].clear(); }},
      {"a sheet that is cut off",
       [](Parts& parts) { parts[kSheetPart].resize(parts[kSheetPart].size() - 5); }},
      {"bytes that are no UTF-8", Row("<c t=\"str\"><v>caf\xE9</v></c>")},
      {"a control character", Row("<c t=\"str\"><v>a\x01</v></c>")},
      {"a control character, in a tag", Row("<c t=\"\x1F\"/>")},
      {"a character of value zero", Row(std::string("<c t=\"str\"><v>\0</v></c>", 24))},
      {"a control character in the workbook", Replace(kWorkbookPart, "Data", "Da\x0Bta")},
      {"a control character by its number", Row("<c t=\"str\"><v>a&#1;</v></c>")},
      {"a character that is none", Row("<c t=\"str\"><v>\xEF\xBF\xBF</v></c>")},
      {"a reference that means nothing", Row("<c t=\"str\"><v>caf&eacute;</v></c>")},
      {"an attribute twice", Row("<c s=\"0\" r=\"A1\" s=\"0\"/>")},
      {"an attribute twice, in the workbook",
       Replace(kWorkbookPart, "sheetId=", "sheetId=\"1\" sheetId=")},
      {"a tag within an attribute", Row("<c r=\"A1\"><f ca=\"<v>\">1</f></c>")},
      {"a declaration behind a blank", [](Parts& parts) { parts[kSheetPart].insert(0, "\n"); }},
      {"bytes that are no UTF-8, in a sheet of another name",
       [](Parts& parts) {
         ReplaceAll(parts[kBookRelationships], "sheet1.xml", "sheet1");
         parts["xl/worksheets/sheet1"] = "<worksheet><sheetData>\xFF</sheetData></worksheet>";
       }},
      {"another encoding", Replace(kSheetPart, "1.0\"?>", "1.0\" encoding=\"ISO-8859-1\"?>")},
      {"an encoding of four bytes a character",
       [](Parts& parts) { parts[kSheetPart] = std::string("\0\0\0<\0\0\0a\0\0\0/\0\0\0>", 16); }},
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
      {"two sheets in one part, by names that differ in case",
       [](Parts& parts) {
         AddWorkbookPart(parts, "worksheet", "worksheets/SHEET1.xml", "");
         parts.erase("xl/worksheets/SHEET1.xml");
         ReplaceAll(parts[kWorkbookPart], "</sheets>",
                    "<sheet name=\"More\" r:id=\"rIdworksheet\"/></sheets>");
       }},
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
      {"data tables over more than the sheet",
       Row("<c><f t=\"dataTable\" ref=\"A1:XFD900\" r1=\"A1\"/></c>"
           "<c><f t=\"dataTable\" ref=\"A1:XFD900\" r1=\"A1\"/></c>")},
      {"a data table at no place", Row("<c><f t=\"dataTable\" ref=\"?\"/></c>")},
  };
}

// Files beyond a limit, just beyond it where that takes no time to write.
std::vector<RefusedFile> RefusedSizes() {
  return {
      {"65,536 parts",
       [](Parts& parts) {
         for (std::size_t i = parts.size(); i <= kMostParts; ++i) {
           parts["xl/" + std::to_string(i)] = "";
         }
       }},
      {"parts that claim 5 gigabytes, each of them one",
       [](Parts& parts) {
         for (char c = '1'; c <= '5'; ++c) parts[std::string("xl/big") + c] = std::string(99, 'x');
       },
       [](std::string& bytes) {
         // Long enough that the sizes are no suspicious multiple of it.
         constexpr std::size_t kLength = 24 << 20;
         Stretch(bytes, kLength);
         for (const char* part : {"xl/big1", "xl/big2", "xl/big3", "xl/big4", "xl/big5"}) {
           PatchDirectory(bytes, part, kPackedSize, kLength, 4);
           PatchDirectory(bytes, part, kUnpackedSize, kLargestPart, 4);
         }
       }},
      {"a workbook part of more than 64 megabytes",
       [](Parts& parts) {
         // The digits keep the file from shrinking to a suspicious fraction.
         std::minstd_rand random;
         std::string digits;
         while (digits.size() < 800000) digits += std::to_string(random());
         parts[kWorkbookPart] += "<!--" + digits + "-->" + std::string(kLargestTree, ' ');
       }},
      {"10,001 sheets",
       [](Parts& parts) {
         std::string sheets;
         std::string relationships;
         for (std::size_t i = 1; i <= kMostSheets; ++i) {
           const std::string number = std::to_string(i);
           sheets += "<sheet name=\"" + number + "\" r:id=\"s" + number + "\"/>";
           relationships += "<Relationship Id=\"s" + number + "\" Type=\"t/worksheet\" Target=\"" +
                            number + ".xml\"/>";
           parts["xl/" + number + ".xml"] = "";
         }
         ReplaceAll(parts[kWorkbookPart], "</sheets>", sheets + "</sheets>");
         ReplaceAll(parts[kBookRelationships], "</Relationships>",
                    relationships + "</Relationships>");
       }},
      {"257 windows", Replace(kWorkbookPart, "<sheets>",
                              "<bookViews>" + Repeated("<workbookView/>", kMostWindows + 1) +
                                  "</bookViews><sheets>")},
      {"more than a million relationships",
       [](Parts& parts) {
         ReplaceAll(parts[kBookRelationships], "</Relationships>",
                    Repeated("<Relationship/>", kMostRelationships) + "</Relationships>");
       }},
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
  for (const auto& files :
       {RefusedArchives(), RefusedPackages(), RefusedContents(), RefusedSizes()}) {
    for (const RefusedFile& file : files) {
      SCOPED_TRACE(file.name);
      const std::filesystem::path path = Write(file);
      const std::string before = FileBytes(path);
      try {
        WorkbookFile::Open(path);
        ADD_FAILURE() << "was opened";
      } catch (const FileError& error) {
        const std::string line = Line(file.name, error);
        EXPECT_NE(documented.find(line), std::string::npos) << "lacks " << line;
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

// Of the true limit's size the table would take gigabytes.
TEST(SharedStringsTest, TooManyAreRefused) {
  auto package = OpcPackage::Create();
  package->Write("s.xml", "<sst><si/><si><t>a</t></si><si/></sst>");
  StringPool strings;
  ReadSharedStrings(*package, "s.xml", strings, 3);
  EXPECT_EQ(strings.shared_count(), 3u);
  try {
    StringPool few;
    ReadSharedStrings(*package, "s.xml", few, 2);
    ADD_FAILURE() << "three where two are allowed";
  } catch (const FileError& error) {
    EXPECT_EQ(error.code(), FileError::Code::kTooLarge);
    EXPECT_EQ(error.part(), "s.xml");
    EXPECT_EQ(error.place(), "byte 27");
  }
}

// A few bytes of a sheet can take a thousandfold in memory: a cell makes room for 64, and one at
// the sheet's end for a list of all blocks above it.
TEST(SheetRoomTest, SheetsThatTakeTooMuchMemoryAreRefused) {
  const std::string rows[] = {
      "<row r=\"1048576\">" + Repeated("<c/>", 100) + "</row>",
      "<row>" + Repeated("<c/>", 10000) + "</row>",
      Repeated("<row ht=\"1\"/>", 200000),
      "<row><c t=\"str\"><v>" + std::string(6 << 20, 'x') + "</v></c></row>",
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
