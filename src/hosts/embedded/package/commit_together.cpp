#include "package/commit_together.h"

#include <deque>
#include <filesystem>
#include <string>
#include <system_error>

#include "package/file_error.h"

namespace vantora::embedded {
namespace {

namespace fs = std::filesystem;

// The file that a target is now, under a second name as long as this object lives.
class KeptFile {
 public:
  // Throws FileError.
  explicit KeptFile(const ReplacementFile& replacement)
      : target_(replacement.target()), name_(replacement.path().string() + ".before") {
    std::error_code error;
    existed_ = fs::exists(target_, error);
    if (!existed_) return;
    fs::create_hard_link(target_, name_, error);
    // Not every file system has hard links.
    if (error) fs::copy_file(target_, name_, error);
    if (!error) return;
    std::error_code ignored;
    fs::remove(name_, ignored);
    throw FileError(FileError::Code::kCannotWrite,
                    target_.string() +
                        " can't be written: the file that it is now can't be kept (" +
                        error.message() + ").");
  }
  ~KeptFile() {
    std::error_code ignored;
    if (existed_) fs::remove(name_, ignored);
  }
  KeptFile(const KeptFile&) = delete;
  KeptFile& operator=(const KeptFile&) = delete;

  // Puts it back in its place. Where that fails as well, it stays under the second name, which is
  // given then; "" otherwise.
  std::string Restore() {
    std::error_code error;
    if (existed_) {
      fs::rename(name_, target_, error);
    } else {
      fs::remove(target_, error);
    }
    const bool failed = static_cast<bool>(error);
    const bool stays = failed && existed_;
    existed_ = false;
    if (stays) return "the file before is " + name_.string();
    return failed ? target_.string() + " is new" : "";
  }

 private:
  fs::path target_;
  fs::path name_;
  bool existed_ = false;
};

}  // namespace

void CommitTogether(std::span<const std::unique_ptr<ReplacementFile>> files) {
  for (const auto& file : files) file->Prepare();
  if (files.size() == 1) return files.front()->Commit();
  std::deque<KeptFile> kept;
  for (const auto& file : files) kept.emplace_back(*file);
  std::size_t committed = 0;
  try {
    for (; committed < files.size(); ++committed) files[committed]->Commit();
  } catch (const FileError& error) {
    std::string left;
    while (committed > 0) {
      const std::string what = kept[--committed].Restore();
      if (!what.empty()) left += (left.empty() ? "" : ", ") + what;
    }
    if (left.empty()) throw;
    throw FileError(error.code(), std::string(error.what()) +
                                      " The files written before could not be put back: " + left +
                                      ".");
  }
}

}  // namespace vantora::embedded
