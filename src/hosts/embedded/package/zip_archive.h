// The zip archive under a package: entries read and written as they are compressed.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "package/file_error.h"

struct zip;

namespace vantora::embedded {

// Bytes as an archive holds them.
struct PackedBytes {
  std::string bytes;
  bool deflated = false;
  std::uint32_t crc = 0;  // of the bytes unpacked
  std::uint64_t size = 0;
};

// Compresses; stores what does not get smaller.
PackedBytes Pack(std::string_view bytes);
// Throws FileError (kDamaged) naming `part` when the bytes do not unpack to their size and
// checksum.
std::string Unpack(const PackedBytes& packed, std::string_view part);

// A file opened for reading. It may be replaced by another one under its name meanwhile.
class ZipArchive {
 public:
  struct Entry {
    std::string name;
    std::uint64_t size = 0;
    std::uint64_t packed_size = 0;
    std::uint32_t crc = 0;
    bool deflated = false;
  };

  // Throws FileError: telling a missing file from a damaged one and from one of another kind.
  explicit ZipArchive(const std::filesystem::path& path);
  ~ZipArchive();
  ZipArchive(const ZipArchive&) = delete;
  ZipArchive& operator=(const ZipArchive&) = delete;

  const std::vector<Entry>& entries() const { return entries_; }
  // Unpacked bytes of an entry. Throws FileError. May be called from several threads.
  std::string Read(std::size_t index) const;
  // The entry as the archive has it, not unpacked. Throws FileError.
  PackedBytes ReadPacked(std::size_t index) const;

 private:
  friend void WriteZip(const class ReplacementFile&, const ZipArchive*,
                       const std::vector<struct ZipOutput>&);
  void ReadDirectory(std::uint64_t file_size);

  std::string file_name_;
  zip* handle_ = nullptr;
  std::vector<Entry> entries_;
  mutable std::mutex mutex_;
};

// An entry to write: one of the source archive's, copied as it is compressed, or new bytes.
struct ZipOutput {
  std::string name;
  std::size_t source_index = 0;
  const PackedBytes* packed = nullptr;  // null: the source archive's entry
};

// A file beside `target` that takes its place when all of it has been written. Symbolic links are
// followed, permissions of a file that is replaced kept.
class ReplacementFile {
 public:
  // Throws FileError (kCannotWrite).
  explicit ReplacementFile(const std::filesystem::path& target);
  // Removes the file unless it was committed.
  ~ReplacementFile();
  ReplacementFile(const ReplacementFile&) = delete;
  ReplacementFile& operator=(const ReplacementFile&) = delete;

  const std::filesystem::path& path() const { return temporary_; }
  // Gives the file the owner and permissions that it is to have and flushes it to the disk. Throws
  // FileError (kCannotWrite).
  void Prepare();
  // The same where it was not done, and renames. Throws FileError (kCannotWrite).
  void Commit();
  const std::filesystem::path& target() const { return target_; }
  // The target as it was given: a symbolic link itself.
  const std::filesystem::path& requested() const { return requested_; }

 private:
  std::filesystem::path requested_;
  std::filesystem::path target_;
  std::filesystem::path temporary_;
  bool prepared_ = false;
  // Of the file that is replaced; -1 leaves the owner as it is.
  unsigned mode_ = 0;
  unsigned owner_ = static_cast<unsigned>(-1);
  unsigned group_ = static_cast<unsigned>(-1);
};

// Writes an archive to the replacement file. `source` may be null when no entry comes from it.
// Throws FileError (kCannotWrite).
void WriteZip(const ReplacementFile& file, const ZipArchive* source,
              const std::vector<ZipOutput>& entries);

}  // namespace vantora::embedded
