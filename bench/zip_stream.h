// Writes a zip archive part by part, each as a stream: what is written is held nowhere.
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vantora::bench {

class ZipStream {
 public:
  // Throws std::runtime_error when the file can't be written.
  explicit ZipStream(const std::filesystem::path& path);
  ~ZipStream();

  // Starts a part and ends the one before.
  void Begin(std::string name);
  void Write(std::string_view bytes);
  // Ends the archive.
  void Close();

 private:
  struct Part {
    std::string name;
    std::uint64_t offset = 0;
    std::uint32_t crc = 0;
    std::uint64_t size = 0;
    std::uint64_t compressed_size = 0;
  };
  struct Deflater;

  void EndPart();
  void Compress(std::string_view bytes, bool ends);
  void WriteLocalHeader(const Part& part);

  std::ofstream file_;
  std::vector<Part> parts_;
  std::unique_ptr<Deflater> deflater_;
};

}  // namespace vantora::bench
