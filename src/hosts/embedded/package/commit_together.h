// Several files that take their places all or not at all.
#pragma once

#include <memory>
#include <span>

#include "package/zip_archive.h"

namespace vantora::embedded {

// Commits the files. What can fail is done for all of them before the first one gets its name, and
// where a name can't be given after all, the files that have theirs are put back as they were
// before. Throws FileError; the targets are then as they were. A program or machine that ends
// between two names leaves some of the files new and some old, each of them whole: no file system
// gives several files their names at once.
void CommitTogether(std::span<const std::unique_ptr<ReplacementFile>> files);

}  // namespace vantora::embedded
