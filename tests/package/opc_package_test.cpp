#include "package/opc_package.h"

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <zip.h>

#include <csignal>
#include <fstream>
#include <thread>

#include "package/package_support.h"

namespace vantora::embedded {
namespace {

using Code = FileError::Code;
using ::testing::HasSubstr;
using ::testing::Not;

std::string FileBytes(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

class OpcPackageTest : public PackageTest {
 protected:
  std::filesystem::path WriteFile(const std::string& name, std::string_view bytes) const {
    std::ofstream(Path(name), std::ios::binary) << bytes;
    return Path(name);
  }
};

TEST_F(OpcPackageTest, DetectsDamagedBytes) {
  Parts parts = OneSheet("<sheetData/>");
  parts["xl/media/noise.bin"] = "0123456789abcdef";
  std::string bytes = FileBytes(WriteZipFile("book.xlsx", parts));
  std::size_t at = bytes.find("0123456789abcdef");
  ASSERT_NE(at, std::string::npos) << "too small to be compressed";
  bytes[at] = 'X';
  auto package = OpcPackage::Open(WriteFile("bad.xlsx", bytes));
  EXPECT_EQ(package->Read(kSheetPart), parts[kSheetPart]);
  EXPECT_THROW(package->Read("xl/media/noise.bin"), FileError);
}

TEST_F(OpcPackageTest, ReadsPartsInUtf16) {
  Parts parts =
      OneSheet("<sheetData><row><c t=\"str\"><v>\u00E4\U0001F600</v></c></row></sheetData>");
  std::string utf16 = "\xFF\xFE";
  std::string head = parts[kSheetPart];
  head.replace(head.find("?>"), 0, " encoding=\"UTF-16\"");
  for (std::size_t i = 0; i < head.size(); ++i) {
    if (head.compare(i, 2, "\u00E4") == 0) {
      utf16 += {'\xE4', '\0'};
      i += 1;
    } else if (head.compare(i, 4, "\U0001F600") == 0) {
      utf16 += {'\x3D', '\xD8', '\x00', '\xDE'};
      i += 3;
    } else {
      utf16 += {head[i], '\0'};
    }
  }
  parts[kSheetPart] = utf16;
  auto file = OpenParts(parts);
  Cell cell = file->model().sheets[0]->cells.Get({1, 1});
  ASSERT_EQ(cell.value.kind, CellKind::kText);
  EXPECT_EQ(file->model().strings[cell.value.text], "\u00E4\U0001F600");
}

TEST_F(OpcPackageTest, ContentTypesAndRelationshipsArePatchedInPlace) {
  Parts parts = OneSheet("<sheetData/>");
  parts["xl/worksheets/_rels/sheet1.xml.rels"] =
      "<p:Relationships xmlns:p=\"x\"><p:Relationship Id=\"rId2\" Type=\"t/hyperlink\" "
      "Target=\"https://a?b&amp;c\" TargetMode='External'/></p:Relationships>";
  auto package = OpcPackage::Open(WriteZipFile("book.xlsx", parts));
  const std::string rels = "xl/worksheets/_rels/sheet1.xml.rels";

  EXPECT_EQ(package->AddRelationship(kSheetPart, "t/comments", "xl/comments1.xml"), "rId1");
  EXPECT_EQ(package->AddRelationship(kSheetPart, "t/drawing", "../drawings/a.xml"), "rId3");
  EXPECT_THAT(package->Read(rels), HasSubstr("Target=\"../comments1.xml\""));
  EXPECT_THAT(package->Read(rels), HasSubstr("TargetMode='External'"));
  const auto& relationships = package->RelationshipsOf(kSheetPart);
  ASSERT_EQ(relationships.size(), 3u);
  EXPECT_EQ(relationships[0].target, "https://a?b&c");
  EXPECT_TRUE(relationships[0].external);
  EXPECT_EQ(relationships[1].target, "xl/comments1.xml");
  EXPECT_TRUE(relationships[1].IsType("comments"));
  EXPECT_EQ(relationships[2].target, "xl/drawings/a.xml");
  package->RemoveRelationship(kSheetPart, "rId1");
  package->RemoveRelationship(kSheetPart, "rId3");
  EXPECT_EQ(package->Read(rels), parts[rels]);

  EXPECT_EQ(package->ContentTypeOf("XL/WorkBook.xml"),
            "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml");
  package->SetContentType("xl/comments1.xml", "x/comments");
  package->EnsureDefaultContentType("vml", "x/vml");
  package->EnsureDefaultContentType("XML", "ignored");
  EXPECT_EQ(package->ContentTypeOf("xl/comments1.xml"), "x/comments");
  EXPECT_EQ(package->ContentTypeOf("xl/a.vml"), "x/vml");
  package->RemoveContentType("xl/comments1.xml");
  EXPECT_EQ(package->ContentTypeOf("xl/comments1.xml"), "application/xml");
  EXPECT_EQ(package->FreePartName("xl/worksheets/sheet", ".xml"), "xl/worksheets/sheet2.xml");
}

TEST_F(OpcPackageTest, SavesOverTheOpenFileAndKeepsUnchangedBytes) {
  auto path = WriteZipFile("book.xlsx", OneSheet("<sheetData/>"));
  std::filesystem::permissions(path, std::filesystem::perms(0640));
  auto package = OpcPackage::Open(path);
  auto names = package->PartNames();
  for (int round = 0; round < 2; ++round) {
    std::string text = "round " + std::to_string(round);
    package->Write("xl/worksheets/SHEET1.xml", text);
    package->Write("xl/large.bin", std::string(3 << 20, static_cast<char>('a' + round)));
    package->Save(path);
    auto again = OpcPackage::Open(path);
    EXPECT_EQ(again->Read(kSheetPart), text);
    EXPECT_EQ(again->Read("xl/large.bin"), std::string(3 << 20, static_cast<char>('a' + round)));
    EXPECT_EQ(again->Read(kWorkbookPart), OneSheet("")[kWorkbookPart]);
    auto expected = names;
    expected.push_back("xl/large.bin");
    EXPECT_EQ(again->PartNames(), expected) << "changed parts keep their place";
  }
  EXPECT_NE(package->ReadOriginal(kSheetPart), package->Read(kSheetPart));
  EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0640));
}

TEST_F(OpcPackageTest, FailedSavesLeaveTheTargetAndNoOtherFile) {
  auto path = WriteZipFile("book.xlsx", OneSheet("<sheetData/>"));
  const std::string before = FileBytes(path);
  auto package = OpcPackage::Open(path);
  // Noise does not shrink, so that the limit on file sizes below is met while writing.
  std::string noise(1 << 21, '\0');
  unsigned state = 1;
  for (char& c : noise) c = static_cast<char>((state = state * 1103515245 + 12345) >> 16);
  package->Write("xl/large.bin", noise);
  auto expect_failure = [&](const std::filesystem::path& target) {
    try {
      package->Save(target);
      ADD_FAILURE() << target << " was written";
    } catch (const FileError& error) {
      EXPECT_EQ(static_cast<int>(error.code()), static_cast<int>(Code::kCannotWrite));
      EXPECT_THAT(error.what(), HasSubstr(target.filename().string()));
      EXPECT_THAT(error.what(), Not(HasSubstr("XXXXXX")));
    }
  };
  expect_failure(Path("no such folder/book.xlsx"));
  std::filesystem::create_directory(Path("folder.xlsx"));
  expect_failure(Path("folder.xlsx"));
  expect_failure("/dev/full");

  std::signal(SIGXFSZ, SIG_IGN);
  rlimit limit{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &limit), 0);
  rlimit small{1 << 20, limit.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  expect_failure(path);
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);

  EXPECT_EQ(FileBytes(path), before);
  std::vector<std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(path.parent_path())) {
    files.push_back(entry.path().filename().string());
  }
  EXPECT_THAT(files, ::testing::UnorderedElementsAre("book.xlsx", "folder.xlsx"));
  package->Save(path);
  EXPECT_EQ(OpcPackage::Open(path)->Read("xl/large.bin"), noise);
}

TEST_F(OpcPackageTest, ACrashBeforeTheRenameLeavesTheFileBefore) {
  auto path = WriteZipFile("book.xlsx", OneSheet("<sheetData/>"));
  const std::string before = FileBytes(path);
  const pid_t child = fork();
  if (child == 0) {
    auto package = OpcPackage::Open(path);
    package->Write("xl/new.bin", "x");
    auto written = package->WriteBeside(path);
    _exit(0);  // without Commit, and without cleaning up
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(FileBytes(path), before);
  OpcPackage::Open(path)->Save(path);  // what the crash left behind is in nobody's way
}

TEST_F(OpcPackageTest, PartsAreReadAndWrittenFromSeveralThreads) {
  Parts parts = OneSheet("<sheetData/>");
  for (int i = 0; i < 32; ++i) {
    parts["xl/p" + std::to_string(i) + ".bin"] = std::string(5000 + i, static_cast<char>('A' + i));
  }
  auto package = OpcPackage::Open(WriteZipFile("book.xlsx", parts));
  {
    std::vector<std::jthread> threads;
    for (int t = 0; t < 4; ++t) {
      threads.emplace_back([&, t] {
        for (int i = t; i < 32; i += 2) {
          std::string name = "xl/p" + std::to_string(i) + ".bin";
          EXPECT_EQ(package->ReadOriginal(name), parts[name]);
          package->Write(name, std::to_string(i));
        }
      });
    }
  }
  for (int i = 0; i < 32; ++i) {
    EXPECT_EQ(package->Read("xl/p" + std::to_string(i) + ".bin"), std::to_string(i));
  }
}

}  // namespace
}  // namespace vantora::embedded
