// How much a file may claim of the machine that opens it. Each limit lies far above what the
// largest workbook in use needs, and low enough that a file made to exhaust memory or time is
// refused first.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vantora::embedded {

// Entries of the archive: what an archive can hold without its 64-bit form.
inline constexpr std::size_t kMostParts = 65535;
// Bytes of a part unpacked, and of all parts together.
inline constexpr std::uint64_t kLargestPart = std::uint64_t{1} << 30;
inline constexpr std::uint64_t kLargestPackage = std::uint64_t{4} << 30;
// Where more than `kSuspectSize` bytes come out of an archive or an entry, they may be at most
// `kSuspectRatio` times the bytes that went in. Sheets shrink to a tenth or, where rows repeat, to
// a fiftieth.
inline constexpr std::uint64_t kSuspectSize = std::uint64_t{64} << 20;
inline constexpr std::uint64_t kSuspectRatio = 250;
// Elements within one another. Drawings with groups within groups have some tens.
inline constexpr std::size_t kDeepestElement = 1000;
// Bytes of a part that is read as a tree, which takes some twenty times its size.
inline constexpr std::size_t kLargestTree = std::size_t{64} << 20;
// Bytes that the cells, rows and formulas of all sheets take in memory: a hundred million cells.
inline constexpr std::size_t kLargestModel = std::size_t{2} << 30;
// Relationships in the package. One takes 14 bytes in the file and a hundred and more in memory; a
// sheet with links has up to 65,530.
inline constexpr std::size_t kMostRelationships = std::size_t{1} << 20;
inline constexpr std::size_t kMostSheets = 10000;
// Windows on the workbook: each has a view of each sheet.
inline constexpr std::size_t kMostWindows = 256;
// Texts in the table of shared strings.
inline constexpr std::size_t kMostSharedStrings = std::size_t{1} << 24;
// Cells of all array formulas of a sheet, and of all its data tables: each becomes a cell.
inline constexpr std::uint64_t kMostArrayCells = std::uint64_t{1} << 24;

}  // namespace vantora::embedded
