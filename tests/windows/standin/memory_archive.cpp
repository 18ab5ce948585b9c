// In place of files: archives that are kept in memory under the paths they were written to. What is
// stored in them is not compressed. Another format than Excel's own is refused.
#include <map>
#include <utility>

#include "host/xls_export.h"
#include "package/zip_archive.h"

struct zip {
  std::vector<vantora::embedded::ZipArchive::Entry> entries;
  std::vector<std::string> parts;
};

namespace vantora::embedded {
namespace {

std::map<std::filesystem::path, zip> files;

}  // namespace

PackedBytes Pack(std::string_view bytes) {
  return {.bytes = std::string(bytes), .size = bytes.size()};
}
std::string Unpack(const PackedBytes& packed, std::string_view) { return packed.bytes; }

ZipArchive::ZipArchive(const std::filesystem::path& path) : file_name_(path.filename().string()) {
  const auto file = files.find(path);
  if (file == files.end()) {
    throw FileError(FileError::Code::kNotFound, "There is no file \"" + path.string() + "\".");
  }
  handle_ = new zip(file->second);
  entries_ = handle_->entries;
}
ZipArchive::~ZipArchive() { delete handle_; }

std::string ZipArchive::Read(std::size_t index) const { return handle_->parts[index]; }
PackedBytes ZipArchive::ReadPacked(std::size_t index) const { return Pack(Read(index)); }

ReplacementFile::ReplacementFile(const std::filesystem::path& target)
    : requested_(target), target_(target), temporary_(target.string() + ".new") {}
ReplacementFile::~ReplacementFile() { files.erase(temporary_); }
void ReplacementFile::Prepare() {}
void ReplacementFile::Commit() { files[target_] = std::exchange(files[temporary_], {}); }

void WriteZip(const ReplacementFile& file, const ZipArchive* source,
              const std::vector<ZipOutput>& entries) {
  zip written;
  for (const ZipOutput& entry : entries) {
    written.parts.push_back(entry.packed ? entry.packed->bytes : source->Read(entry.source_index));
    const std::uint64_t size = written.parts.back().size();
    written.entries.push_back({.name = entry.name, .size = size, .packed_size = size});
  }
  files[file.path()] = std::move(written);
}

std::unique_ptr<ReplacementFile> ExportXls(OpenWorkbook&, const std::filesystem::path&) {
  throw FileError(FileError::Code::kUnsupported, "The tests on Windows write no .xls files.");
}

}  // namespace vantora::embedded
