// A workbook's parts, from text: each part begins with a line "=== " and its name. What opens takes
// edits; what is saved opens again.
#include <string_view>

#include "core/host_error.h"
#include "fuzz_support.h"
#include "host/session.h"
#include "package/opc_package.h"

namespace {

using namespace vantora;
using namespace vantora::embedded;

constexpr std::string_view kMark = "=== ";

// Content types and the package's relationships may be left out: nearly all inputs want the usual.
constexpr char kTypes[] =
    "<Types><Default Extension=\"rels\" ContentType=\"r\"/><Default Extension=\"xml\" "
    "ContentType=\"x\"/><Override PartName=\"/xl/workbook.xml\" ContentType=\"application/"
    "vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml\"/></Types>";
constexpr char kRelationships[] =
    "<Relationships><Relationship Id=\"r1\" Type=\"t/officeDocument\" "
    "Target=\"xl/workbook.xml\"/></Relationships>";

void WriteParts(std::string_view text, const std::filesystem::path& path) {
  auto package = OpcPackage::Create();
  package->Write("[Content_Types].xml", kTypes);
  package->Write("_rels/.rels", kRelationships);
  while (!text.empty()) {
    const std::size_t next = text.find("\n=== ", 1);
    std::string_view part = text.substr(0, next);
    text = next == std::string_view::npos ? std::string_view{} : text.substr(next + 1);
    if (!part.starts_with(kMark)) continue;
    const std::size_t line_end = std::min(part.find('\n'), part.size());
    const std::string_view name = part.substr(kMark.size(), line_end - kMark.size());
    if (name.empty() || name.find('\0') != std::string_view::npos) continue;
    package->Write(name, std::string(part.substr(std::min(line_end + 1, part.size()))));
  }
  package->Save(path);
}

// Calls `edit`; an edit may be refused.
template <typename Edit>
void Try(Edit&& edit) {
  try {
    edit();
  } catch (const HostError&) {
  } catch (const FileError&) {
  }
}

void EditAndSave(const std::filesystem::path& path, const std::filesystem::path& saved) {
  std::unique_ptr<Session> session;
  try {
    session = Session::Open(path);
    session->Save(saved);
  } catch (const FileError&) {
    return;
  }
  Try([&] { session->Calculate(); });
  const std::string sheet = session->file().model().sheets[0]->name;
  Try([&] { session->Worksheet(sheet)->Cells(2, 2)->SetValue(Value("text")); });
  Try([&] {
    session->Worksheet(sheet)->Columns(2)->Insert(host::XlInsertShiftDirection::kToRight);
  });
  Try([&] { session->Worksheet(sheet)->Columns(3)->Copy(); });
  Try([&] {
    session->Worksheet(sheet)->Columns(2)->PasteSpecial(
        host::XlPasteType::kAll, host::XlPasteSpecialOperation::kNone, false, false);
  });
  Try([&] { session->ShapesOf(sheet); });
  Try([&] { session->Worksheet(sheet)->Cells(3, 3)->Clear(); });
  bool is_saved = false;
  Try([&] {
    session->Save(saved);
    is_saved = true;
  });
  if (!is_saved) return;
  try {
    Session::Open(saved);
  } catch (const FileError& error) {
    fuzz::Require(false, error.what());
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const fuzz::ScratchFile input("fuzz-workbook");
  static const fuzz::ScratchFile saved("fuzz-saved");
  try {
    WriteParts({reinterpret_cast<const char*>(data), size}, input.path());
  } catch (const FileError&) {
    return 0;  // names that no archive takes
  }
  EditAndSave(input.path(), saved.path());
  return 0;
}
