#include "cli/save.h"

#include <unistd.h>

#include <string>
#include <system_error>
#include <utility>

#include "core/convert.h"
#include "package/file_error.h"
#include "ui/console/interrupt.h"

namespace vantora::cli {
namespace {

namespace fs = std::filesystem;

fs::path WithSuffix(fs::path path, const std::string& suffix) { return path += suffix; }

embedded::FileError CannotKeep(const fs::path& name, const std::string& why) {
  return embedded::FileError(
      embedded::FileError::Code::kCannotWrite,
      "The model as it is can't be kept as " + name.string() + ": " + why + ".");
}

// A second name for a file: it disappears with this object unless it is kept.
class SecondName {
 public:
  // Throws FileError.
  SecondName(const fs::path& file, fs::path name) : name_(std::move(name)) {
    std::error_code error;
    fs::create_hard_link(file, name_, error);
    // Not every file system has hard links.
    if (error) fs::copy_file(file, name_, error);
    if (error) throw CannotKeep(name_, error.message());
  }
  ~SecondName() {
    std::error_code ignored;
    if (!kept_) fs::remove(name_, ignored);
  }
  SecondName(const SecondName&) = delete;
  SecondName& operator=(const SecondName&) = delete;

  // Gives it a lasting name, replacing a file of that name, and returns the name it has then: the
  // second one still where it can't have the other.
  fs::path KeepAs(const fs::path& name) {
    kept_ = true;
    std::error_code error;
    fs::rename(name_, name, error);
    if (error) return name_;
    // Renaming does nothing when both are names of the same file already.
    fs::remove(name_, error);
    return name;
  }

 private:
  fs::path name_;
  bool kept_ = false;
};

SavedFiles SaveInPlace(embedded::Session& session, const fs::path& model) {
  std::error_code error;
  // Of a symbolic link, the file behind it.
  const fs::path file = fs::is_symlink(model) ? fs::canonical(model) : model;
  const fs::path backup = WithSuffix(file, ".bak");
  if (fs::is_directory(backup, error)) throw CannotKeep(backup, "a folder has that name");
  SecondName before(file, WithSuffix(file, ".bak-" + std::to_string(getpid())));
  session.Save(file);
  return {file, before.KeepAs(backup)};
}

}  // namespace

void CheckOutput(const fs::path& model, const fs::path& output) {
  std::error_code ignored;
  if (fs::equivalent(model, output, ignored)) {
    throw UsageError(
        "--output names the model itself; use --in-place, which keeps the file before.");
  }
  if (!EqualsIgnoreCase(model.extension().string(), output.extension().string())) {
    throw UsageError("The output " + output.string() + " must end in " +
                     model.extension().string() +
                     " as the model does: Excel opens a workbook only under its own ending.");
  }
}

void CheckTarget(const RunOptions& options) {
  if (options.target == Target::kOutputFile) CheckOutput(options.model, options.output);
}

SavedFiles Save(embedded::Session& session, const RunOptions& options) {
  // Ctrl-C takes effect once the file is whole.
  ui::InterruptAsButton interrupt;
  if (options.target == Target::kInPlace) return SaveInPlace(session, options.model);
  session.Save(options.output);
  return {options.output, std::nullopt};
}

}  // namespace vantora::cli
