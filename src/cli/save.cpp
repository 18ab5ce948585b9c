#include "cli/save.h"

#include <system_error>
#include <utility>

#include "core/convert.h"
#include "package/file_error.h"
#include "ui/console/interrupt.h"

namespace vantora::cli {
namespace {

namespace fs = std::filesystem;

// A second name for a file: it disappears with this object unless it is kept.
class SecondName {
 public:
  // Throws FileError.
  SecondName(const fs::path& file, fs::path name) : name_(std::move(name)) {
    std::error_code error;
    fs::remove(name_, error);  // left over from a run that was killed
    fs::create_hard_link(file, name_, error);
    // Not every file system has hard links.
    if (error) fs::copy_file(file, name_, error);
    if (error) {
      throw embedded::FileError(embedded::FileError::Code::kCannotWrite,
                                "The file " + name_.string() +
                                    " can't be written, so the model before the change can't be "
                                    "kept: " +
                                    error.message() + ".");
    }
  }
  ~SecondName() {
    std::error_code ignored;
    if (!kept_) fs::remove(name_, ignored);
  }
  SecondName(const SecondName&) = delete;
  SecondName& operator=(const SecondName&) = delete;

  // Gives it its lasting name, replacing a file of that name. Throws FileError.
  void KeepAs(const fs::path& name) {
    kept_ = true;
    std::error_code error;
    fs::rename(name_, name, error);
    if (error) {
      throw embedded::FileError(embedded::FileError::Code::kCannotWrite,
                                "The model was written, but the one before it could not be renamed "
                                "to " +
                                    name.string() + ": " + error.message() + ". It is in " +
                                    name_.string() + ".");
    }
  }

 private:
  fs::path name_;
  bool kept_ = false;
};

fs::path WithSuffix(fs::path path, const char* suffix) { return path += suffix; }

SavedFiles SaveInPlace(embedded::Session& session, const fs::path& model) {
  std::error_code error;
  fs::path file = fs::canonical(model, error);  // the file behind a symbolic link
  if (error) file = model;
  const fs::path backup = WithSuffix(file, ".bak");
  SecondName before(file, WithSuffix(file, ".bak.new"));
  session.Save(file);
  before.KeepAs(backup);
  return {file, backup};
}

}  // namespace

void CheckTarget(const RunOptions& options) {
  if (options.target != Target::kOutputFile) return;
  std::error_code ignored;
  if (fs::equivalent(options.model, options.output, ignored)) {
    throw UsageError(
        "--output names the model itself; use --in-place, which keeps the file before.");
  }
  if (!EqualsIgnoreCase(options.model.extension().string(), options.output.extension().string())) {
    throw UsageError("The output " + options.output.string() + " must end in " +
                     options.model.extension().string() +
                     " as the model does: Excel opens a workbook only under its own ending.");
  }
}

SavedFiles Save(embedded::Session& session, const RunOptions& options) {
  // Ctrl-C takes effect once the file is whole.
  ui::InterruptAsButton interrupt;
  if (options.target == Target::kInPlace) return SaveInPlace(session, options.model);
  session.Save(options.output);
  return {options.output, std::nullopt};
}

}  // namespace vantora::cli
