// A package: parts, their content types and relationships, in a zip archive.
#pragma once

#include <deque>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "package/file_error.h"
#include "package/xml_scanner.h"
#include "package/zip_archive.h"

namespace vantora::embedded {

// What is wrong with a part, as FileError.
[[noreturn]] void ThrowDamaged(std::string_view part, const XmlError& error);

struct Relationship {
  std::string id;
  // The type's full URI. Compare with IsType, which knows the strict form as well.
  std::string type;
  // Part name ("xl/worksheets/sheet1.xml") of an internal target, resolved; else the target as
  // written.
  std::string target;
  bool external = false;

  // `kind` is the last segment: "worksheet", "comments", "vmlDrawing".
  bool IsType(std::string_view kind) const;
};

// Part names are without a leading slash and compare without regard to case, as packages do.
// Parts are read from the archive when asked for; changed ones are held until saved, large ones
// compressed. Has, Read, ReadOriginal and Write may be called from several threads at once.
class OpcPackage {
 public:
  // Throws FileError.
  static std::unique_ptr<OpcPackage> Open(const std::filesystem::path& path);
  // Without an archive: no parts yet.
  static std::unique_ptr<OpcPackage> Create();
  ~OpcPackage();

  // In the order of the archive.
  std::vector<std::string> PartNames() const;
  bool Has(std::string_view part) const;
  // The part's bytes as they are now; an XML part in UTF-16 comes as UTF-8. Throws FileError when
  // it is missing or damaged.
  std::string Read(std::string_view part) const;
  // The part as the archive has it, whatever has been written since (or removed).
  std::string ReadOriginal(std::string_view part) const;
  // The archive has the part.
  bool HasOriginal(std::string_view part) const;
  // Replaces a part's bytes, or adds the part. A part put back to its original bytes counts as
  // changed all the same.
  void Write(std::string_view part, std::string bytes);
  // Makes a changed part what it is in the archive.
  void Revert(std::string_view part);
  // Removes the part and its own relationships; not the relationships that point to it, nor its
  // content type.
  void Remove(std::string_view part);
  bool IsChanged(std::string_view part) const;

  // "" when the package declares none.
  std::string ContentTypeOf(std::string_view part) const;
  // Adds an override to [Content_Types].xml (nothing when a default already says so).
  void SetContentType(std::string_view part, std::string_view content_type);
  void RemoveContentType(std::string_view part);
  // Declares the content type of an extension where none is declared.
  void EnsureDefaultContentType(std::string_view extension, std::string_view content_type);

  // The relationships of a part; of the package itself for "". Valid until they are changed. Throws
  // FileError when they are malformed.
  const std::vector<Relationship>& RelationshipsOf(std::string_view part) const;
  // Adds a relationship and returns its id (the first free "rIdN"). `type` is the full URI,
  // `target` a part name ("xl/comments1.xml"; also taken: a path that begins with "/" or "../").
  std::string AddRelationship(std::string_view part, std::string_view type,
                              std::string_view target);
  // Gives `part` a relationship that leads out of the package to where the one of `source_part` in
  // `source` with that id leads. Nullopt when it leads to a part.
  std::optional<std::string> CopyExternalRelationship(const OpcPackage& source,
                                                      std::string_view source_part,
                                                      std::string_view id, std::string_view part);
  // Of a relationship that leads to no part: `target` is written as it is.
  void SetTarget(std::string_view part, std::string_view id, std::string_view target);
  void RemoveRelationship(std::string_view part, std::string_view id);
  // A name that is free: "xl/comments" and ".xml" give "xl/comments1.xml" or the next.
  std::string FreePartName(std::string_view stem, std::string_view extension) const;

  // Writes the package to `path`: a temporary file beside it, flushed, then renamed. Unchanged
  // parts are copied as they are compressed. On failure throws FileError and leaves `path` as it
  // was.
  void Save(const std::filesystem::path& path) { WriteBeside(path)->Commit(); }
  // The first half of Save: the file beside `path`, whose Commit gives it its name. Without, it
  // disappears with the object.
  std::unique_ptr<ReplacementFile> WriteBeside(const std::filesystem::path& path);

 private:
  // `target` is written as it is; returns the id.
  std::string AppendRelationship(std::string_view part, std::string_view type,
                                 std::string_view target, bool external);

  // A part, or another entry of the archive.
  struct Item {
    std::string name;
    // Place in the archive; kNotInArchive for a part that was added.
    std::size_t index = kNotInArchive;
    bool changed = false;
    bool removed = false;
    // Of a changed part: its bytes, or the same compressed.
    std::string bytes;
    std::unique_ptr<PackedBytes> packed;
  };
  static constexpr std::size_t kNotInArchive = static_cast<std::size_t>(-1);

  OpcPackage();
  // Null when there is none (`removed` ones count for FindAny).
  const Item* Find(std::string_view part) const;
  Item* FindAny(std::string_view part);
  [[noreturn]] void FailMissing(std::string_view part) const;
  void ForgetRelationships();

  std::unique_ptr<ZipArchive> archive_;
  // In the order of the archive, added ones at the end.
  std::deque<Item> items_;
  // By name in lower case.
  std::unordered_map<std::string, Item*> by_name_;
  mutable std::map<std::string, std::vector<Relationship>> relationships_;
  mutable std::size_t relationship_count_ = 0;
  mutable std::mutex mutex_;
};

}  // namespace vantora::embedded
