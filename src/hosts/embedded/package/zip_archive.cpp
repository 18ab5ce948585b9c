#include "package/zip_archive.h"

#include <fcntl.h>
#include <libdeflate.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zip.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <string_view>

#include "package/file_limits.h"
#include "package/part_name.h"

namespace vantora::embedded {
namespace {

constexpr int kCompressionLevel = 6;

std::string Quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

[[noreturn]] void FailWrite(const std::filesystem::path& path, const std::string& reason) {
  throw FileError(FileError::Code::kCannotWrite, "The file " + Quoted(path.string()) +
                                                     " can't be written: " + reason +
                                                     ". The file is as it was.");
}

[[noreturn]] void FailWrite(const std::filesystem::path& path, int error) {
  FailWrite(path, std::strerror(error));
}

[[noreturn]] void FailDamagedPart(std::string_view part) {
  throw FileError(FileError::Code::kDamaged,
                  "The part " + Quoted(part) +
                      " of the package is damaged. Open the file in Excel to repair it, or use a "
                      "backup.",
                  std::string(part));
}

bool FileContains(std::ifstream& file, std::string_view wanted) {
  file.clear();
  file.seekg(0);
  std::string window;
  std::string chunk(1 << 16, '\0');
  while (file.read(chunk.data(), static_cast<std::streamsize>(chunk.size())), file.gcount() > 0) {
    window.append(chunk, 0, static_cast<std::size_t>(file.gcount()));
    if (window.find(wanted) != std::string::npos) return true;
    if (window.size() > wanted.size()) window.erase(0, window.size() - wanted.size());
  }
  return false;
}

// A compound file: what Excel wrote before packages, and the wrapper of encrypted packages.
[[noreturn]] void FailCompoundFile(std::ifstream& file, const std::string& name) {
  std::string stream_name;
  for (char c : std::string_view("EncryptedPackage")) stream_name += {c, '\0'};
  if (FileContains(file, stream_name)) {
    throw FileError(FileError::Code::kEncrypted,
                    Quoted(name) +
                        " is protected by a password. Remove the password for opening in Excel "
                        "and save the file.");
  }
  throw FileError(
      FileError::Code::kLegacyFormat,
      Quoted(name) + " is a workbook of the old .xls format. Save it as .xlsm in Excel.");
}

// Throws for all that is no zip archive.
void CheckSignature(const std::filesystem::path& path, const std::string& name) {
  using Code = FileError::Code;
  std::error_code error;
  auto status = std::filesystem::status(path, error);
  if (!std::filesystem::exists(status)) {
    throw FileError(Code::kNotFound, "There is no file " + Quoted(path.string()) + ".");
  }
  if (std::filesystem::is_directory(status)) {
    throw FileError(Code::kNotFound, Quoted(path.string()) + " is a folder, not a file.");
  }
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    throw FileError(Code::kNotFound, "The file " + Quoted(path.string()) +
                                         " can't be read: " + std::strerror(errno) + ".");
  }
  char head[8] = {};
  file.read(head, sizeof head);
  std::string_view signature(head, static_cast<std::size_t>(file.gcount()));
  if (signature == "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1") FailCompoundFile(file, name);
  if (!signature.starts_with("PK\x03\x04") && !signature.starts_with("PK\x05\x06")) {
    throw FileError(Code::kNotAPackage, Quoted(name) +
                                            " is not an Excel workbook (.xlsx or .xlsm): it is not "
                                            "a zip archive.");
  }
}

bool IsSuspect(std::uint64_t unpacked, std::uint64_t packed) {
  return unpacked > kSuspectSize && unpacked / kSuspectRatio > packed;
}

void CheckSizes(const ZipArchive::Entry& entry, const std::string& file_name) {
  if (entry.size > kLargestPart || IsSuspect(entry.size, entry.packed_size)) {
    throw FileError(FileError::Code::kTooLarge,
                    "The part " + Quoted(entry.name) + " of " + Quoted(file_name) +
                        " claims a size that no workbook has.",
                    entry.name);
  }
}

// Entries may share their bytes, so that each is small and all together are not.
void CheckTotal(const std::vector<ZipArchive::Entry>& entries, std::uint64_t file_size,
                const std::string& file_name) {
  std::uint64_t total = 0;
  for (const ZipArchive::Entry& entry : entries) total += entry.size;
  if (total > kLargestPackage || IsSuspect(total, file_size)) {
    throw FileError(FileError::Code::kTooLarge,
                    "The parts of " + Quoted(file_name) + " claim a size that no workbook has.");
  }
}

// Hands compressed bytes to the archive library as they are.
struct PackedSource {
  const PackedBytes* packed;
  std::size_t offset = 0;
};

zip_int64_t ReadPackedSource(void* state, void* data, zip_uint64_t length,
                             zip_source_cmd_t command) {
  auto* source = static_cast<PackedSource*>(state);
  const PackedBytes& packed = *source->packed;
  switch (command) {
    case ZIP_SOURCE_OPEN:
      source->offset = 0;
      return 0;
    case ZIP_SOURCE_READ: {
      std::size_t count = std::min<std::size_t>(length, packed.bytes.size() - source->offset);
      std::memcpy(data, packed.bytes.data() + source->offset, count);
      source->offset += count;
      return static_cast<zip_int64_t>(count);
    }
    case ZIP_SOURCE_STAT: {
      auto* stat = static_cast<zip_stat_t*>(data);
      zip_stat_init(stat);
      stat->valid = ZIP_STAT_SIZE | ZIP_STAT_COMP_SIZE | ZIP_STAT_CRC | ZIP_STAT_COMP_METHOD |
                    ZIP_STAT_ENCRYPTION_METHOD;
      stat->size = packed.size;
      stat->comp_size = packed.bytes.size();
      stat->crc = packed.crc;
      stat->comp_method = packed.deflated ? ZIP_CM_DEFLATE : ZIP_CM_STORE;
      stat->encryption_method = ZIP_EM_NONE;
      return sizeof *stat;
    }
    case ZIP_SOURCE_SUPPORTS:
      return zip_source_make_command_bitmap(ZIP_SOURCE_OPEN, ZIP_SOURCE_READ, ZIP_SOURCE_CLOSE,
                                            ZIP_SOURCE_STAT, ZIP_SOURCE_ERROR, ZIP_SOURCE_FREE, -1);
    case ZIP_SOURCE_ERROR: {
      int* codes = static_cast<int*>(data);
      codes[0] = codes[1] = 0;
      return 2 * sizeof(int);
    }
    case ZIP_SOURCE_FREE:
      delete source;
      return 0;
    case ZIP_SOURCE_CLOSE:
      return 0;
    default:
      return -1;
  }
}

std::string ErrorText(zip_t* handle) { return zip_error_strerror(zip_get_error(handle)); }

std::string OpenErrorText(int code) {
  zip_error_t error;
  zip_error_init_with_code(&error, code);
  std::string text = zip_error_strerror(&error);
  zip_error_fini(&error);
  return text;
}

// The entry's place in `out`.
zip_int64_t AddEntry(zip_t* out, zip_t* in, const ZipOutput& entry) {
  zip_source_t* source =
      entry.packed ? zip_source_function(out, ReadPackedSource, new PackedSource{entry.packed})
                   : zip_source_zip(out, in, entry.source_index, ZIP_FL_COMPRESSED, 0, 0);
  if (!source) return -1;
  zip_int64_t index = zip_file_add(out, entry.name.c_str(), source, ZIP_FL_ENC_UTF_8);
  if (index < 0) zip_source_free(source);
  return index;
}

bool CopyAttributes(zip_t* out, zip_uint64_t index, zip_t* in, const ZipOutput& entry) {
  if (entry.packed) {
    // The earliest time that an archive can hold, as Excel writes it: equal contents give equal
    // files.
    return zip_file_set_dostime(out, index, 0, (1 << 5) | 1, 0) == 0;
  }
  zip_uint8_t system = 0;
  zip_uint32_t attributes = 0;
  if (zip_file_get_external_attributes(in, entry.source_index, 0, &system, &attributes) < 0) {
    return true;
  }
  return zip_file_set_external_attributes(out, index, 0, system, attributes) == 0;
}

// 0, or the error's number.
int FlushToDisk(const std::filesystem::path& path, int flags) {
  int descriptor = open(path.c_str(), flags | O_CLOEXEC);
  int failure = descriptor < 0 || fsync(descriptor) != 0 ? errno : 0;
  if (descriptor >= 0) close(descriptor);
  return failure;
}

}  // namespace

PackedBytes Pack(std::string_view bytes) {
  PackedBytes packed;
  packed.size = bytes.size();
  packed.crc = libdeflate_crc32(0, bytes.data(), bytes.size());
  std::unique_ptr<libdeflate_compressor, decltype(&libdeflate_free_compressor)> compressor(
      libdeflate_alloc_compressor(kCompressionLevel), libdeflate_free_compressor);
  if (!compressor) throw std::bad_alloc();
  // What needs as much room as the bytes themselves is stored.
  packed.bytes.resize(bytes.size());
  std::size_t size = libdeflate_deflate_compress(compressor.get(), bytes.data(), bytes.size(),
                                                 packed.bytes.data(), packed.bytes.size());
  packed.deflated = size > 0;
  if (packed.deflated) {
    packed.bytes.resize(size);
    packed.bytes.shrink_to_fit();
  } else {
    packed.bytes = bytes;
  }
  return packed;
}

std::string Unpack(const PackedBytes& packed, std::string_view part) {
  std::string bytes;
  if (!packed.deflated) {
    bytes = packed.bytes;
  } else {
    std::unique_ptr<libdeflate_decompressor, decltype(&libdeflate_free_decompressor)> decompressor(
        libdeflate_alloc_decompressor(), libdeflate_free_decompressor);
    if (!decompressor) throw std::bad_alloc();
    bytes.resize(packed.size);
    if (libdeflate_deflate_decompress(decompressor.get(), packed.bytes.data(), packed.bytes.size(),
                                      bytes.data(), bytes.size(), nullptr) != LIBDEFLATE_SUCCESS) {
      FailDamagedPart(part);
    }
  }
  if (bytes.size() != packed.size ||
      libdeflate_crc32(0, bytes.data(), bytes.size()) != packed.crc) {
    FailDamagedPart(part);
  }
  return bytes;
}

ZipArchive::ZipArchive(const std::filesystem::path& path) : file_name_(path.filename().string()) {
  CheckSignature(path, file_name_);
  int code = 0;
  handle_ = zip_open(path.c_str(), ZIP_RDONLY, &code);
  if (!handle_) {
    throw FileError(FileError::Code::kDamaged,
                    Quoted(file_name_) + " is truncated or damaged (" + OpenErrorText(code) +
                        "). Open it in Excel to repair it, or use a backup.");
  }
  try {
    ReadDirectory(std::filesystem::file_size(path));
  } catch (...) {
    zip_discard(handle_);
    throw;
  }
}

ZipArchive::~ZipArchive() { zip_discard(handle_); }

void ZipArchive::ReadDirectory(std::uint64_t file_size) {
  const zip_int64_t count = zip_get_num_entries(handle_, 0);
  if (static_cast<std::size_t>(count) > kMostParts) {
    throw FileError(FileError::Code::kTooLarge, Quoted(file_name_) + " holds more than " +
                                                    std::to_string(kMostParts) + " parts.");
  }
  entries_.reserve(static_cast<std::size_t>(count));
  for (zip_int64_t i = 0; i < count; ++i) {
    zip_stat_t stat;
    if (zip_stat_index(handle_, static_cast<zip_uint64_t>(i), 0, &stat) != 0) {
      throw FileError(FileError::Code::kDamaged,
                      Quoted(file_name_) + " is damaged (" + ErrorText(handle_) + ").");
    }
    Entry entry{stat.name, stat.size, stat.comp_size, stat.crc, stat.comp_method == ZIP_CM_DEFLATE};
    if (!IsPartName(entry.name)) {
      throw FileError(FileError::Code::kBadPartName,
                      Quoted(file_name_) + " holds a part named " + Quoted(entry.name) +
                          ", a name that no part can have.",
                      entry.name);
    }
    if (stat.encryption_method != ZIP_EM_NONE) {
      throw FileError(FileError::Code::kEncrypted, Quoted(file_name_) +
                                                       " is an encrypted zip archive. Save the "
                                                       "workbook in Excel without a password.");
    }
    if (!entry.deflated && stat.comp_method != ZIP_CM_STORE) {
      throw FileError(FileError::Code::kUnsupported,
                      "The part " + Quoted(entry.name) + " of " + Quoted(file_name_) +
                          " is compressed in a way that workbooks do not use. Save the workbook "
                          "in Excel.",
                      entry.name);
    }
    if (entry.packed_size > file_size || (!entry.deflated && entry.size != entry.packed_size)) {
      FailDamagedPart(entry.name);
    }
    CheckSizes(entry, file_name_);
    entries_.push_back(std::move(entry));
  }
  CheckTotal(entries_, file_size, file_name_);
}

PackedBytes ZipArchive::ReadPacked(std::size_t index) const {
  const Entry& entry = entries_[index];
  PackedBytes packed{{}, entry.deflated, entry.crc, entry.size};
  std::lock_guard lock(mutex_);
  zip_file_t* file = zip_fopen_index(handle_, index, ZIP_FL_COMPRESSED);
  if (!file) FailDamagedPart(entry.name);
  packed.bytes.resize(entry.packed_size);
  zip_int64_t count = zip_fread(file, packed.bytes.data(), packed.bytes.size());
  zip_fclose(file);
  if (count != static_cast<zip_int64_t>(entry.packed_size)) FailDamagedPart(entry.name);
  return packed;
}

std::string ZipArchive::Read(std::size_t index) const {
  return Unpack(ReadPacked(index), entries_[index].name);
}

void WriteZip(const ReplacementFile& file, const ZipArchive* source,
              const std::vector<ZipOutput>& entries) {
  int code = 0;
  zip_t* out = zip_open(file.path().c_str(), ZIP_CREATE | ZIP_TRUNCATE, &code);
  if (!out) FailWrite(file.target(), OpenErrorText(code));
  zip_t* in = source ? source->handle_ : nullptr;
  std::unique_lock<std::mutex> lock;
  if (source) lock = std::unique_lock(source->mutex_);
  bool written = true;
  for (const ZipOutput& entry : entries) {
    zip_int64_t index = AddEntry(out, in, entry);
    if (index < 0 || !CopyAttributes(out, static_cast<zip_uint64_t>(index), in, entry)) {
      written = false;
      break;
    }
  }
  if (!written || zip_close(out) != 0) {
    std::string reason = ErrorText(out);
    zip_discard(out);
    FailWrite(file.target(), reason);
  }
}

ReplacementFile::ReplacementFile(const std::filesystem::path& target)
    : requested_(target), target_(target) {
  std::error_code error;
  if (std::filesystem::is_symlink(target, error)) {
    target_ = std::filesystem::weakly_canonical(target, error);
    if (error) FailWrite(target, error.message());
  }
  struct stat existing {};
  if (stat(target_.c_str(), &existing) == 0) {
    if (S_ISDIR(existing.st_mode)) FailWrite(target_, EISDIR);
    if (!S_ISREG(existing.st_mode)) FailWrite(target_, "it is not an ordinary file");
    if (access(target_.c_str(), W_OK) != 0) FailWrite(target_, errno);
    mode_ = existing.st_mode & 07777;
    owner_ = existing.st_uid;
    group_ = existing.st_gid;
  } else {
    mode_t mask = umask(0);
    umask(mask);
    mode_ = 0666 & ~mask;
  }
  std::string name = "." + target_.filename().string() + ".XXXXXX";
  std::string pattern = (target_.parent_path() / name).string();
  int descriptor = mkstemp(pattern.data());
  if (descriptor < 0) FailWrite(target_, errno);
  close(descriptor);
  temporary_ = pattern;
}

ReplacementFile::~ReplacementFile() {
  if (!temporary_.empty()) unlink(temporary_.c_str());
}

void ReplacementFile::Prepare() {
  if (prepared_) return;
  // Only an administrator can keep another's ownership; anyone else's save makes the file his.
  if (chown(temporary_.c_str(), owner_, group_) != 0 && errno != EPERM) FailWrite(target_, errno);
  if (chmod(temporary_.c_str(), mode_) != 0) FailWrite(target_, errno);
  if (int failure = FlushToDisk(temporary_, O_RDONLY)) FailWrite(target_, failure);
  prepared_ = true;
}

void ReplacementFile::Commit() {
  Prepare();
  if (rename(temporary_.c_str(), target_.c_str()) != 0) FailWrite(target_, errno);
  temporary_.clear();
  // The new file is in its place: a folder that can't be flushed does not make the save fail.
  std::filesystem::path folder = target_.parent_path();
  FlushToDisk(folder.empty() ? "." : folder, O_RDONLY | O_DIRECTORY);
}

}  // namespace vantora::embedded
