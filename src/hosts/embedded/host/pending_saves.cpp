#include "host/pending_saves.h"

#include "core/convert.h"
#include "host/xls_export.h"

namespace vantora::embedded {
namespace {

constexpr std::string_view kOldEnding = ".xls";

bool EndsWith(std::string_view text, std::string_view ending) {
  return text.size() >= ending.size() &&
         EqualsIgnoreCase(text.substr(text.size() - ending.size()), ending);
}

std::string EndingOf(OpenWorkbook& workbook) {
  return workbook.file().is_macro_enabled() ? ".xlsm" : ".xlsx";
}

bool IsOldFormat(std::string_view filename, host::XlFileFormat format) {
  return format == host::XlFileFormat::kExcel8 ||
         (format == host::XlFileFormat::kWorkbookNormal && EndsWith(filename, kOldEnding));
}

// A workbook takes another format only with a save that succeeds.
class FileFormatChange {
 public:
  explicit FileFormatChange(WorkbookFile& file) : file_(file), was_(file.main_content_type()) {}
  ~FileFormatChange() {
    if (!kept_) file_.SetMainContentType(was_);
  }
  FileFormatChange(const FileFormatChange&) = delete;
  FileFormatChange& operator=(const FileFormatChange&) = delete;
  void Keep() { kept_ = true; }

 private:
  WorkbookFile& file_;
  std::string was_;
  bool kept_ = false;
};

}  // namespace

void PendingSaves::Save(OpenWorkbook& workbook) {
  const std::string ending =
      EndsWith(workbook.file().name(), kOldEnding) ? std::string(kOldEnding) : EndingOf(workbook);
  Write(workbook, {.workbook = workbook.file().name(), .filename = {}, .ending = ending});
}

void PendingSaves::SaveAs(OpenWorkbook& workbook, const std::string& filename,
                          host::XlFileFormat format) {
  FileFormatChange change(workbook.file());
  SaveRequest request{.workbook = workbook.file().name(), .filename = filename, .ending = {}};
  if (IsOldFormat(filename, format)) {
    request.ending = kOldEnding;
  } else {
    if (format == host::XlFileFormat::kOpenXmlWorkbookMacroEnabled) {
      workbook.file().MakeMacroEnabled();
    }
    request.ending = EndingOf(workbook);
  }
  Write(workbook, request);
  change.Keep();
  workbook.file().SetName(filename.substr(filename.find_last_of("/\\") + 1));
}

void PendingSaves::Write(OpenWorkbook& workbook, const SaveRequest& request) {
  try {
    if (!director_) {
      throw HostError(HostError::kApplicationDefined,
                      "The workbook is not saved: nothing says where to.");
    }
    if (const std::optional<std::filesystem::path> target = director_(request)) {
      // Only the last save to a target counts; its file goes before another is written beside it.
      std::erase_if(written_, [&](const auto& file) { return file->requested() == *target; });
      written_.push_back(request.ending == kOldEnding ? ExportXls(workbook, *target)
                                                      : workbook.WriteBeside(*target));
    }
    any_ = true;
    failure_.clear();
  } catch (const HostError& error) {
    failure_ = error.description();
    throw;
  } catch (const FileError& error) {
    failure_ = error.what();
    throw HostError(HostError::kApplicationDefined, failure_);
  }
}

std::vector<std::filesystem::path> PendingSaves::Commit() {
  std::vector<std::filesystem::path> paths;
  for (const auto& file : written_) {
    file->Commit();
    paths.push_back(file->requested());
  }
  written_.clear();
  return paths;
}

}  // namespace vantora::embedded
