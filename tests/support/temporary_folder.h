// A folder for the files of one test.
#pragma once

#include <filesystem>
#include <random>
#include <string>
#include <utility>

namespace vantora::testing {

// Made with the object, by a name that no other test has (they run side by side), and removed with
// it. A file-system error comes as std::filesystem::filesystem_error, except from the removal.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::random_device random;
    do {
      path_ = std::filesystem::temp_directory_path() / ("vantora-test-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(path_));
  }
  TemporaryFolder(TemporaryFolder&& other) noexcept { swap(other); }
  TemporaryFolder& operator=(TemporaryFolder&& other) noexcept {
    swap(other);
    return *this;
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
  }

  void swap(TemporaryFolder& other) noexcept { path_.swap(other.path_); }
  const std::filesystem::path& path() const { return path_; }
  std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

 private:
  std::filesystem::path path_;
};

}  // namespace vantora::testing
