#include "cli/save.h"

#include <unistd.h>

#include <memory>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

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

embedded::FileError CannotWrite(const fs::path& file, const std::string& why) {
  return embedded::FileError(embedded::FileError::Code::kCannotWrite,
                             file.string() + " can't be written: " + why + ".");
}

bool IsSameFile(const fs::path& a, const fs::path& b) {
  std::error_code ignored;
  return fs::equivalent(a, b, ignored);
}

void RequireSameEnding(const fs::path& source, const fs::path& output, const std::string& kind) {
  if (EqualsIgnoreCase(source.extension().string(), output.extension().string())) return;
  throw UsageError("The output " + output.string() + " must end in " + source.extension().string() +
                   " as the " + kind + " does: Excel opens a workbook only under its own ending.");
}

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

using Replacements = std::vector<std::unique_ptr<embedded::ReplacementFile>>;

// Writes the model, and gives its file and the further ones their names.
void Write(embedded::Session& session, const fs::path& file, Replacements further) {
  if (!session.saves().any()) further.push_back(session.WriteBeside(file));
  session.CommitSaves(std::move(further));
}

void RefuseModelItself(const fs::path& model, const fs::path& output) {
  if (!IsSameFile(model, output)) return;
  throw UsageError("--output names the model itself; use --in-place, which keeps the file before.");
}

SavedFiles SaveInPlace(embedded::Session& session, const fs::path& model, Replacements further) {
  std::error_code error;
  const fs::path file = FileBehind(model);
  const fs::path backup = WithSuffix(file, ".bak");
  if (fs::is_directory(backup, error)) throw CannotKeep(backup, "a folder has that name");
  SecondName before(file, WithSuffix(file, ".bak-" + std::to_string(getpid())));
  Write(session, file, std::move(further));
  return {file, before.KeepAs(backup)};
}

}  // namespace

void CheckOutput(const fs::path& model, const fs::path& output) {
  if (IsSameFile(model, output)) {
    throw UsageError("--output names " + model.string() + " itself; choose another name.");
  }
  RequireSameEnding(model, output, "model");
}

void CheckTarget(const RunOptions& options) {
  std::vector<fs::path> opened = {options.model};
  std::vector<std::pair<fs::path, fs::path>> outputs;
  if (options.target == Target::kOutputFile) outputs.emplace_back(options.model, options.output);
  for (const FurtherWorkbook& workbook : options.further) {
    opened.push_back(workbook.path);
    if (!workbook.output.empty()) outputs.emplace_back(workbook.path, workbook.output);
  }
  if (options.target == Target::kNowhere && !outputs.empty()) {
    throw UsageError("--dry-run writes nothing: leave --output-for out.");
  }
  if (options.target == Target::kOutputFile) RefuseModelItself(options.model, options.output);
  for (std::size_t i = 0; i < outputs.size(); ++i) {
    const auto& [source, output] = outputs[i];
    // An operation may save the model in another format; whether it did shows at the end.
    const bool may_differ =
        source == options.model && (HasEnding(output, ".xlsm") || HasEnding(output, ".xls"));
    if (!may_differ) {
      RequireSameEnding(source, output, source == options.model ? "model" : "workbook");
    }
    for (const fs::path& path : opened) {
      if (!IsSameFile(path, output)) continue;
      throw UsageError("The output " + output.string() + " is the workbook " + path.string() +
                       ", which is opened: choose another name.");
    }
    for (std::size_t other = 0; other < i; ++other) {
      if (fs::weakly_canonical(outputs[other].second) != fs::weakly_canonical(output)) continue;
      throw UsageError("Two workbooks can't both be written to " + output.string() + ".");
    }
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
  // Ctrl-C takes effect once the files are whole.
  ui::InterruptAsButton interrupt;
  Replacements further;
  for (std::size_t i = 0; i < options.further.size(); ++i) {
    const fs::path& output = options.further[i].output;
    if (output.empty()) continue;
    if (fs::is_directory(output)) throw CannotWrite(output, "a folder has that name");
    further.push_back(session.WriteBeside(output, static_cast<int>(i) + 1));
  }
  SavedFiles files;
  if (options.target == Target::kInPlace) {
    files = SaveInPlace(session, options.model, std::move(further));
  } else {
    if (!session.saves().any()) RequireSameEnding(options.model, options.output, "model");
    Write(session, options.output, std::move(further));
    files.written = options.output;
  }
  return files;
}

}  // namespace vantora::cli
