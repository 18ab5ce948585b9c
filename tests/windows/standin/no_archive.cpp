// In place of reading and writing files, which the tests on Windows do without: their workbooks are
// made in memory. Only packing works, as storing.
#include "host/xls_export.h"
#include "package/workbook_file.h"
#include "package/zip_archive.h"

namespace vantora::embedded {
namespace {

[[noreturn]] void Refuse() {
  throw FileError(FileError::Code::kUnsupported, "The tests on Windows read and write no files.");
}

}  // namespace

PackedBytes Pack(std::string_view bytes) {
  return {.bytes = std::string(bytes), .size = bytes.size()};
}
std::string Unpack(const PackedBytes& packed, std::string_view) { return packed.bytes; }

ZipArchive::ZipArchive(const std::filesystem::path&) { Refuse(); }
ZipArchive::~ZipArchive() = default;
std::string ZipArchive::Read(std::size_t) const { Refuse(); }

ReplacementFile::ReplacementFile(const std::filesystem::path&) { Refuse(); }
ReplacementFile::~ReplacementFile() = default;
void ReplacementFile::Commit() { Refuse(); }

void WriteZip(const ReplacementFile&, const ZipArchive*, const std::vector<ZipOutput>&) {
  Refuse();
}

std::unique_ptr<WorkbookFile> WorkbookFile::Open(const std::filesystem::path&) { Refuse(); }

std::unique_ptr<ReplacementFile> ExportXls(OpenWorkbook&, const std::filesystem::path&) {
  Refuse();
}

}  // namespace vantora::embedded
