#include "package/journal.h"

#include <algorithm>
#include <deque>
#include <map>
#include <optional>
#include <set>
#include <sstream>

#include "package/opc_package.h"

namespace vantora::embedded {
namespace {

constexpr std::string_view kDescription = "journal.json";
constexpr std::string_view kResult = "result";
constexpr std::string_view kParts = "parts";
constexpr std::string_view kBefore = "before/";

bool SameContent(const ZipArchive::Entry& a, const ZipArchive::Entry& b) {
  return a.crc == b.crc && a.size == b.size;
}

std::map<std::string, const ZipArchive::Entry*> ByName(const ZipArchive& archive) {
  std::map<std::string, const ZipArchive::Entry*> entries;
  for (const ZipArchive::Entry& entry : archive.entries()) entries[entry.name] = &entry;
  return entries;
}

// A line for each part in the order of their names, so that archives of the same parts agree.
std::string ListParts(const ZipArchive& archive) {
  std::string list;
  for (const auto& [name, entry] : ByName(archive)) {
    list += std::to_string(entry->crc) + " " + std::to_string(entry->size) + " " + name + "\n";
  }
  return list;
}

// The names in such a list.
std::set<std::string> NamesIn(const std::string& list) {
  std::set<std::string> names;
  std::istringstream lines(list);
  for (std::string crc, size, name; lines >> crc >> size && std::getline(lines >> std::ws, name);) {
    names.insert(name);
  }
  return names;
}

std::optional<std::size_t> IndexOf(const ZipArchive& archive, std::string_view name) {
  for (std::size_t i = 0; i < archive.entries().size(); ++i) {
    if (archive.entries()[i].name == name) return i;
  }
  return std::nullopt;
}

std::string ReadEntry(const ZipArchive& journal, const std::filesystem::path& path,
                      std::string_view name) {
  const auto index = IndexOf(journal, name);
  if (!index) {
    throw FileError(FileError::Code::kDamaged, "The file " + path.string() +
                                                   " is no journal of a run: it has no entry \"" +
                                                   std::string(name) + "\".");
  }
  return journal.Read(*index);
}

}  // namespace

void WriteJournal(const std::filesystem::path& journal, const ZipArchive& before,
                  const std::filesystem::path& result, std::string_view description) {
  ReplacementFile file(journal);
  const ZipArchive after(result);
  const auto parts_after = ByName(after);
  std::deque<PackedBytes> packed;
  std::vector<ZipOutput> outputs;
  const auto add = [&](std::string name, PackedBytes bytes) {
    outputs.push_back({.name = std::move(name), .packed = &packed.emplace_back(std::move(bytes))});
  };
  add(std::string(kDescription), Pack(description));
  add(std::string(kResult), Pack(ListParts(after)));
  for (std::size_t i = 0; i < before.entries().size(); ++i) {
    const ZipArchive::Entry& entry = before.entries()[i];
    const auto same = parts_after.find(entry.name);
    if (same != parts_after.end() && SameContent(entry, *same->second)) continue;
    add(std::string(kBefore) + entry.name, before.ReadPacked(i));
  }
  // Which parts the file before had at all tells which ones the run added.
  add(std::string(kParts), Pack(ListParts(before)));
  WriteZip(file, nullptr, outputs);
  file.Commit();
}

void UndoRun(const std::filesystem::path& result, const std::filesystem::path& journal,
             const std::filesystem::path& output) {
  const ZipArchive record(journal);
  if (ReadEntry(record, journal, kResult) != ListParts(ZipArchive(result))) {
    throw FileError(FileError::Code::kChangedSince,
                    "The file " + result.string() +
                        " is not as the run left it: it was changed since, or belongs to another "
                        "journal. Nothing was undone.");
  }
  const auto package = OpcPackage::Open(result);
  const std::set<std::string> parts_before = NamesIn(ReadEntry(record, journal, kParts));
  for (const std::string& part : package->PartNames()) {
    if (!parts_before.contains(part)) package->Remove(part);
  }
  for (std::size_t i = 0; i < record.entries().size(); ++i) {
    const std::string& name = record.entries()[i].name;
    if (name.starts_with(kBefore)) package->Write(name.substr(kBefore.size()), record.Read(i));
  }
  package->Save(output);
}

}  // namespace vantora::embedded
