// What a run replaced in a workbook file, kept in a file of its own, and putting it back.
//
// A journal is a zip archive: "journal.json" tells for a reader what was changed, "result" lists
// the parts of the file that the run wrote (a line each: checksum, size, name), "parts" those of
// the file before in the same way, and "before/" holds each part that the run changed or removed as
// it was.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "package/zip_archive.h"

namespace vantora::embedded {

// Writes the journal of a run that read `before` and wrote `result`. `description` becomes
// journal.json. Throws FileError and leaves `journal` as it was.
void WriteJournal(const std::filesystem::path& journal, const ZipArchive& before,
                  const std::filesystem::path& result, std::string_view description);

// Writes to `output` the workbook that the journalled run had read: every part as it was. Throws
// FileError: kChangedSince when `result` is not the file that the run wrote, kDamaged when the
// journal is none. `output` is left as it was then.
void UndoRun(const std::filesystem::path& result, const std::filesystem::path& journal,
             const std::filesystem::path& output);

}  // namespace vantora::embedded
