#include "core/common.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "core/globals.h"
#include "support/fake_services.h"

namespace vantora {
namespace {

constexpr char kReportStart[] =
    "A programming error has been encountered.  Please record the information below and contact "
    "Vantora support with these details \n\n";

TEST(ProgrammingErrorReport, HasALineForEachPartThatWasPassed) {
  struct Case {
    ProgrammingError error;
    std::string lines;
  } const cases[] = {
      {{}, ""},
      {{.module = "clsYearEnd", .detail = "", .number = 1},
       "Module: clsYearEnd\n\nClass initiated with invalid clsGlobals object\n\n\n\n"},
      {{.module = "clsFreeze", .detail = "", .number = 2},
       "Module: clsFreeze\n\nclsGlobals was not initialized with the Excel application "
       "object\n\n\n\n"},
      {{.number = 3}, "error message #: 3\n\n"},
      {{.number = 0}, ""},
      {{.number = -1}, ""},
      {{.module = "clsRefSheet", .detail = "what went wrong"},
       "Module: clsRefSheet\n\nwhat went wrong\n\n"},
      {{.module = ""}, "Module: \n\n"},
  };
  for (const Case& c : cases) {
    testing::FakeServices fake({"OK"});
    ReportProgrammingError(fake.user_interface, c.error);
    const ui::ShownMessageBox& box = fake.user_interface.message_boxes().at(0);
    EXPECT_EQ(box.text, kReportStart + c.lines);
    EXPECT_EQ(box.title, "Vantora");
    EXPECT_EQ(box.style, kCritical);
  }
}

TEST(SaveFirstConfirmation, StartsWithThePrefaceAndReturnsTheButton) {
  const std::string advice =
      "It's a good idea to save your model before doing this, as it is not undo-able.\n\n"
      "If you're ready to let it continue, click OK, else click Cancel.";
  testing::FakeServices fake({"OK", "cancel"});
  EXPECT_EQ(ConfirmSaveFirst(fake.user_interface, ""), MessageBoxResult::kOk);
  EXPECT_EQ(ConfirmSaveFirst(fake.user_interface, "This will shift all."),
            MessageBoxResult::kCancel);
  const auto& boxes = fake.user_interface.message_boxes();
  EXPECT_EQ(boxes.at(0).text, advice);
  EXPECT_EQ(boxes.at(1).text, "This will shift all.\n\n" + advice);
  EXPECT_EQ(boxes.at(0).style, kOkCancel + kExclamation);
  EXPECT_EQ(boxes.at(0).title, "Vantora");
}

std::vector<std::byte> Bytes(std::string_view text) {
  std::vector<std::byte> bytes;
  for (char c : text) bytes.push_back(static_cast<std::byte>(c));
  return bytes;
}

// The version information of one installed file.
class InstalledFile : public FileVersions {
 public:
  std::string ProgramFilesFolder() override { return "C:\\Programs"; }
  std::size_t Size(std::string_view path) override {
    ++lookups;
    return path == "C:\\Programs\\Orvane\\Vantora\\Orvanemcro1.dll" ? size : 0;
  }
  std::optional<std::vector<std::byte>> Read(std::string_view, std::size_t asked_size) override {
    if (!readable || asked_size != size) return std::nullopt;
    return Bytes("the information");
  }
  std::optional<std::vector<std::byte>> Query(const std::vector<std::byte>& information,
                                              std::string_view entry) override {
    auto found = entries.find(std::string(entry));
    if (information != Bytes("the information") || found == entries.end()) return std::nullopt;
    return Bytes(found->second);
  }

  std::size_t size = 1000;
  bool readable = true;
  int lookups = 0;
  std::map<std::string, std::string> entries = {
      // German (0407), code page 1252 (04E4), then a second translation.
      {"\\VarFileInfo\\Translation", std::string("\x07\x04\xE4\x04\x09\x04\xB0\x04", 8)},
      {"\\StringFileInfo\\040704E4\\FileVersion", std::string("2.1.0.7\0rest", 12)},
  };
};

TEST(VersionLookup, TellsTheFileVersionOfTheFirstTranslation) {
  InstalledFile file;
  EXPECT_EQ(LookUpVersion(file), "Vantora DLL version being used: 2.1.0.7");
  file.entries.erase("\\StringFileInfo\\040704E4\\FileVersion");
  EXPECT_EQ(LookUpVersion(file), "Vantora DLL version being used: Not Available");
}

TEST(VersionLookup, NumbersWhatIsMissing) {
  InstalledFile file;
  file.entries.erase("\\VarFileInfo\\Translation");
  EXPECT_EQ(LookUpVersion(file), "3: No version information available for DLL");
  file.entries["\\VarFileInfo\\Translation"] = "\x07\x04";  // cut short
  EXPECT_EQ(LookUpVersion(file), "3: No version information available for DLL");
  file.readable = false;
  EXPECT_EQ(LookUpVersion(file), "2: No version information available for DLL");
  file.size = 0;
  EXPECT_EQ(LookUpVersion(file), "1: No version information available for DLL");
}

TEST(VersionLookup, HappensEachTimeGlobalsIsAsked) {
  testing::FakeServices fake;
  InstalledFile file;
  Services services{fake.user_interface, fake.clock, file};
  clsGlobals globals(services);
  EXPECT_EQ(globals.Version(), globals.Version());
  EXPECT_EQ(file.lookups, 2);
}

}  // namespace
}  // namespace vantora
