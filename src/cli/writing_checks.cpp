#include "cli/writing_checks.h"

#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>

#include "package/file_error.h"

namespace vantora::cli {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void Refuse(const fs::path& file, const std::string& why) {
  throw embedded::FileError(embedded::FileError::Code::kCannotWrite,
                            "The file \"" + file.string() + "\" can't be written: " + why);
}

void RequireOtherFile(const fs::path& journal, const fs::path& workbook) {
  if (workbook.empty() || fs::weakly_canonical(journal) != fs::weakly_canonical(workbook)) return;
  throw UsageError("--journal names the workbook " + workbook.string() +
                   ", which it would replace. Choose another name.");
}

}  // namespace

void RequireWritable(const fs::path& file) {
  std::error_code ignored;
  if (fs::is_directory(file, ignored)) Refuse(file, "a folder has that name.");
  if (fs::exists(file, ignored) && access(file.c_str(), W_OK) != 0) {
    Refuse(file, "it is write-protected (" + std::generic_category().message(errno) +
                     "). Choose another name, or take the protection off.");
  }
  const fs::path folder = file.has_parent_path() ? file.parent_path() : fs::path(".");
  if (!fs::is_directory(folder, ignored)) {
    Refuse(file, "there is no folder \"" + folder.string() +
                     "\". Make it first, or choose another place.");
  }
  if (access(folder.c_str(), W_OK) != 0) {
    Refuse(file, "nothing can be written to the folder \"" + folder.string() + "\" (" +
                     std::generic_category().message(errno) + "). Choose another place.");
  }
}

void RequireWritableTargets(const RunOptions& options) {
  if (options.target == Target::kOutputFile) RequireWritable(options.output);
  // A model that is not there is told when it is opened.
  if (options.target == Target::kInPlace && fs::exists(options.model)) {
    RequireWritable(fs::canonical(options.model));
  }
  for (const FurtherWorkbook& workbook : options.further) {
    if (!workbook.output.empty()) RequireWritable(workbook.output);
  }
  if (options.journal.empty()) return;
  RequireWritable(options.journal);
  RequireOtherFile(options.journal, options.model);
  RequireOtherFile(options.journal, options.output);
  for (const FurtherWorkbook& workbook : options.further) {
    RequireOtherFile(options.journal, workbook.path);
    RequireOtherFile(options.journal, workbook.output);
  }
}

}  // namespace vantora::cli
