#include "host/xls_export.h"

#include <fcntl.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

namespace vantora::embedded {
namespace {

namespace fs = std::filesystem;

constexpr const char* kProgram = "soffice";
constexpr std::chrono::seconds kPatience{180};
constexpr std::chrono::milliseconds kPause{20};

[[noreturn]] void Fail(const fs::path& target, const std::string& why) {
  throw FileError(FileError::Code::kCannotWrite,
                  "\"" + target.filename().string() + "\" can't be written: " + why);
}

// A folder for the conversion, which disappears with this object.
class WorkFolder {
 public:
  explicit WorkFolder(const fs::path& target) {
    std::string pattern = (fs::temp_directory_path() / "vantora-xls-XXXXXX").string();
    if (!mkdtemp(pattern.data())) Fail(target, std::strerror(errno));
    path_ = pattern;
  }
  ~WorkFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  WorkFolder(const WorkFolder&) = delete;
  WorkFolder& operator=(const WorkFolder&) = delete;
  const fs::path& path() const { return path_; }

 private:
  fs::path path_;
};

// Starts the program without a terminal; 0 with an errno in `failure`.
pid_t Start(const std::vector<std::string>& arguments, int& failure) {
  std::vector<char*> pointers;
  for (const std::string& argument : arguments) {
    pointers.push_back(const_cast<char*>(argument.c_str()));
  }
  pointers.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t process = 0;
  failure = posix_spawnp(&process, kProgram, &actions, nullptr, pointers.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  return failure == 0 ? process : 0;
}

// Whether the program ended well within its time; it is ended when it does not.
bool EndsInTime(pid_t process) {
  const auto limit = std::chrono::steady_clock::now() + kPatience;
  int status = 0;
  while (true) {
    const pid_t ended = waitpid(process, &status, WNOHANG);
    if (ended == process) return WIFEXITED(status) && WEXITSTATUS(status) == 0;
    if (ended < 0 && errno != EINTR) return false;
    if (std::chrono::steady_clock::now() > limit) {
      kill(process, SIGKILL);
      waitpid(process, &status, 0);
      return false;
    }
    std::this_thread::sleep_for(kPause);
  }
}

}  // namespace

std::unique_ptr<ReplacementFile> ExportXls(OpenWorkbook& workbook, const fs::path& target) {
  WorkFolder folder(target);
  const fs::path source = folder.path() / "book.xlsm";
  workbook.Save(source);
  int failure = 0;
  const pid_t process =
      Start({kProgram, "-env:UserInstallation=file://" + (folder.path() / "profile").string(),
             "--headless", "--norestore", "--convert-to", "xls:MS Excel 97", "--outdir",
             (folder.path() / "out").string(), source.string()},
            failure);
  if (process == 0) {
    Fail(target, failure == ENOENT
                     ? "the .xls format needs LibreOffice, and there is no program \"soffice\" in "
                       "the search path. Install LibreOffice, or save as .xlsm."
                     : std::string("LibreOffice does not start: ") + std::strerror(failure) + ".");
  }
  const fs::path result = folder.path() / "out" / "book.xls";
  std::error_code error;
  if (!EndsInTime(process) || !fs::exists(result, error)) {
    Fail(target, "LibreOffice could not convert the workbook to .xls. Save as .xlsm instead.");
  }
  auto file = std::make_unique<ReplacementFile>(target);
  fs::copy_file(result, file->path(), fs::copy_options::overwrite_existing, error);
  if (error) Fail(target, error.message() + ".");
  return file;
}

}  // namespace vantora::embedded
