// What the fuzz targets share.
#pragma once

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace vantora::fuzz {

// A file of this process's own that is removed at its end; in memory where the system has such a
// folder, since a target writes thousands of them.
class ScratchFile {
 public:
  explicit ScratchFile(const std::string& name) {
    const std::filesystem::path memory = "/dev/shm";
    const std::filesystem::path folder =
        std::filesystem::exists(memory) ? memory : std::filesystem::temp_directory_path();
    path_ = folder / (name + "-" + std::to_string(getpid()) + ".xlsx");
  }
  ~ScratchFile() { std::filesystem::remove(path_); }
  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

// Ends the process when what must hold does not.
inline void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "violated: %s\n", what);
  std::abort();
}

}  // namespace vantora::fuzz
