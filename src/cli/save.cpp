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

// Of a symbolic link, the file behind it.
fs::path FileBehind(const fs::path& path) {
  return fs::is_symlink(path) ? fs::canonical(path) : path;
}

bool HasEnding(const fs::path& path, const std::string& ending) {
  return EqualsIgnoreCase(path.extension().string(), ending);
}

[[noreturn]] void RefuseSave(const std::string& why) {
  throw HostError(HostError::kApplicationDefined, why);
}

void Write(embedded::Session& session, const fs::path& file) {
  if (session.saves().any()) {
    session.CommitSaves();
  } else {
    session.Save(file);
  }
}

[[noreturn]] void FailEnding(const RunOptions& options) {
  throw UsageError("The output " + options.output.string() + " must end in " +
                   options.model.extension().string() +
                   " as the model does: Excel opens a workbook only under its own ending.");
}

SavedFiles SaveInPlace(embedded::Session& session, const fs::path& model) {
  std::error_code error;
  const fs::path file = FileBehind(model);
  const fs::path backup = WithSuffix(file, ".bak");
  if (fs::is_directory(backup, error)) throw CannotKeep(backup, "a folder has that name");
  SecondName before(file, WithSuffix(file, ".bak-" + std::to_string(getpid())));
  Write(session, file);
  return {file, before.KeepAs(backup)};
}

}  // namespace

void CheckTarget(const RunOptions& options) {
  if (options.target != Target::kOutputFile) return;
  std::error_code ignored;
  if (fs::equivalent(options.model, options.output, ignored)) {
    throw UsageError(
        "--output names the model itself; use --in-place, which keeps the file before.");
  }
  // An operation may save in another format; whether it did shows at the end.
  const bool may_differ = HasEnding(options.output, ".xlsm") || HasEnding(options.output, ".xls");
  if (!may_differ && !HasEnding(options.output, options.model.extension().string())) {
    FailEnding(options);
  }
}

embedded::SaveDirector DirectorOf(const RunOptions& options) {
  return [&options](const embedded::SaveRequest& request) -> std::optional<fs::path> {
    if (options.target == Target::kNowhere) return std::nullopt;
    std::error_code ignored;
    if (options.target == Target::kInPlace) {
      if (request.filename && fs::path(*request.filename) != options.model.filename() &&
          !fs::equivalent(*request.filename, options.model, ignored)) {
        RefuseSave("The operation saves as \"" + *request.filename +
                   "\", and --in-place writes the model only. Use --output FILE.");
      }
      return FileBehind(options.model);
    }
    if (!HasEnding(options.output, request.ending)) {
      RefuseSave("The operation saves a workbook whose name must end in " + request.ending +
                 ", and --output is " + options.output.string() + ".");
    }
    return options.output;
  };
}

SavedFiles Save(embedded::Session& session, const RunOptions& options) {
  // Ctrl-C takes effect once the file is whole.
  ui::InterruptAsButton interrupt;
  if (options.target == Target::kInPlace) return SaveInPlace(session, options.model);
  if (!session.saves().any() &&
      !HasEnding(options.output, options.model.extension().string())) {
    FailEnding(options);
  }
  Write(session, options.output);
  return {options.output, std::nullopt};
}

}  // namespace vantora::cli
