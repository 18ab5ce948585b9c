#include "package/opc_package.h"

#include <algorithm>
#include <set>

#include "package/file_limits.h"
#include "package/part_name.h"
#include "package/xml_encoding.h"
#include "package/xml_scanner.h"

namespace vantora::embedded {
namespace {

constexpr std::string_view kContentTypes = "[Content_Types].xml";
constexpr std::string_view kEmptyContentTypes =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n"
    "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\"></Types>";
constexpr std::string_view kEmptyRelationships =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n"
    "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">"
    "</Relationships>";
// A changed part of this size or more is held compressed.
constexpr std::size_t kLargePart = 1 << 20;

std::string Lower(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
    if (c == '\\') c = '/';
  }
  return lower;
}

bool SameName(std::string_view a, std::string_view b) { return Lower(a) == Lower(b); }

std::string_view FolderOf(std::string_view part) {
  std::size_t slash = part.rfind('/');
  return slash == std::string_view::npos ? std::string_view{} : part.substr(0, slash);
}

std::string_view ExtensionOf(std::string_view part) {
  std::size_t dot = part.rfind('.');
  return dot == std::string_view::npos ? std::string_view{} : part.substr(dot + 1);
}

std::string RelationshipsPartOf(std::string_view part) {
  std::string_view folder = FolderOf(part);
  std::string name(folder);
  if (!folder.empty()) name += '/';
  name += "_rels/";
  name += folder.empty() ? part : part.substr(folder.size() + 1);
  return name + ".rels";
}

// The part that `target` means in a relationship of `part`.
std::string ResolveTarget(std::string_view part, std::string_view target) {
  std::vector<std::string_view> segments;
  auto append = [&](std::string_view path) {
    while (!path.empty()) {
      std::size_t slash = std::min(path.find('/'), path.size());
      std::string_view segment = path.substr(0, slash);
      path.remove_prefix(std::min(slash + 1, path.size()));
      if (segment == "..") {
        if (!segments.empty()) segments.pop_back();
      } else if (!segment.empty() && segment != ".") {
        segments.push_back(segment);
      }
    }
  };
  if (!target.starts_with('/')) append(FolderOf(part));
  append(target);
  std::string resolved;
  for (std::string_view segment : segments) {
    if (!resolved.empty()) resolved += '/';
    resolved += segment;
  }
  return resolved;
}

// How a relationship of `part` names the part `target`.
std::string RelativeTarget(std::string_view part, std::string_view target) {
  std::string_view folder = FolderOf(part);
  std::string up;
  while (true) {
    if (folder.empty()) return up + std::string(target);
    std::string prefix = std::string(folder) + '/';
    if (target.starts_with(prefix)) return up + std::string(target.substr(prefix.size()));
    folder = FolderOf(folder);
    up += "../";
  }
}

// By its name, or by how it begins: any name will do for a sheet.
bool IsXmlPart(std::string_view part, std::string_view bytes) {
  const std::string extension = Lower(ExtensionOf(part));
  if (extension == "xml" || extension == "rels" || extension == "vml") return true;
  const std::size_t first = bytes.find_first_not_of(" \t\r\n\xEF\xBB\xBF");
  return first != std::string_view::npos && bytes[first] == '<';
}

// The text with a new element before the end of its root, whose prefix it takes.
std::string WithLastChild(std::string_view text, std::string_view name,
                          std::string_view attributes) {
  TextPatch patch(text);
  XmlScanner scanner(text);
  std::string root;
  while (scanner.Next() != XmlScanner::Token::kDone) {
    bool start = scanner.token() == XmlScanner::Token::kStart;
    if (start && root.empty()) root = scanner.name();
    bool end = scanner.token() == XmlScanner::Token::kEnd;
    if (scanner.depth() != 0 || scanner.name() != root || !(end || (start && scanner.is_empty()))) {
      continue;
    }
    std::string prefix = root.substr(0, root.size() - LocalName(root).size());
    std::string element = "<" + prefix + std::string(name) + std::string(attributes) + "/>";
    if (end) {
      patch.Insert(scanner.begin(), element);
    } else {
      patch.Replace(scanner.end() - 2, scanner.end(), ">" + element + "</" + root + ">");
    }
  }
  return patch.Apply();
}

// Calls visit for each start tag below the root.
template <typename Visitor>
void ForEachChild(std::string_view part, std::string_view text, Visitor&& visit) {
  try {
    XmlScanner scanner(text);
    while (scanner.Next() != XmlScanner::Token::kDone) {
      if (scanner.token() == XmlScanner::Token::kStart && scanner.depth() == 1) visit(scanner);
    }
  } catch (const XmlError& error) {
    ThrowDamaged(part, error);
  }
}

std::string DecodedAttribute(const XmlScanner& scanner, std::string_view name) {
  return DecodeXml(scanner.Attribute(name).value_or(""));
}

// Place of the element that the scanner's start tag begins; moves past it.
std::pair<std::size_t, std::size_t> ElementPlace(XmlScanner& scanner) {
  std::size_t begin = scanner.begin();
  scanner.SkipElement();
  return {begin, scanner.end()};
}

bool IsOverrideOf(const XmlScanner& scanner, std::string_view part) {
  if (scanner.local_name() != "Override") return false;
  std::string name = DecodedAttribute(scanner, "PartName");
  return name.starts_with('/') && SameName(std::string_view(name).substr(1), part);
}

}  // namespace

void ThrowDamaged(std::string_view part, const XmlError& error) {
  const std::string place = "byte " + std::to_string(error.offset());
  const bool too_large = error.code() == FileError::Code::kTooLarge;
  throw FileError(error.code(),
                  "The part \"" + std::string(part) + "\" of the package is " +
                      (too_large ? "too large: " : "damaged: ") + error.what() + ", at " + place +
                      ". Open the file in Excel to repair it, or use a backup.",
                  std::string(part), place);
}

bool Relationship::IsType(std::string_view kind) const {
  std::size_t slash = type.rfind('/');
  return slash != std::string::npos && std::string_view(type).substr(slash + 1) == kind;
}

OpcPackage::OpcPackage() = default;
OpcPackage::~OpcPackage() = default;

std::unique_ptr<OpcPackage> OpcPackage::Create() {
  return std::unique_ptr<OpcPackage>(new OpcPackage());
}

std::unique_ptr<OpcPackage> OpcPackage::Open(const std::filesystem::path& path) {
  std::unique_ptr<OpcPackage> package = Create();
  package->archive_ = std::make_unique<ZipArchive>(path);
  const auto& entries = package->archive_->entries();
  for (std::size_t i = 0; i < entries.size(); ++i) {
    Item& item = package->items_.emplace_back();
    item.name = entries[i].name;
    item.index = i;
    if (!package->by_name_.emplace(Lower(item.name), &item).second) {
      throw FileError(
          FileError::Code::kBadPartName,
          "\"" + path.filename().string() + "\" holds two parts named \"" + item.name + "\".",
          item.name);
    }
  }
  if (!package->Has(kContentTypes)) {
    throw FileError(FileError::Code::kNotAWorkbook,
                    "\"" + path.filename().string() +
                        "\" is a zip archive, but not an Excel workbook: it has no "
                        "[Content_Types].xml.");
  }
  return package;
}

const OpcPackage::Item* OpcPackage::Find(std::string_view part) const {
  auto found = by_name_.find(Lower(part));
  return found == by_name_.end() || found->second->removed ? nullptr : found->second;
}

OpcPackage::Item* OpcPackage::FindAny(std::string_view part) {
  auto found = by_name_.find(Lower(part));
  return found == by_name_.end() ? nullptr : found->second;
}

void OpcPackage::FailMissing(std::string_view part) const {
  throw FileError(FileError::Code::kMissingPart,
                  "The package lacks its part \"" + std::string(part) +
                      "\". Open the file in Excel to repair it, or use a backup.",
                  std::string(part));
}

std::vector<std::string> OpcPackage::PartNames() const {
  std::vector<std::string> names;
  for (const Item& item : items_) {
    if (!item.removed && !item.name.ends_with('/')) names.push_back(item.name);
  }
  return names;
}

bool OpcPackage::Has(std::string_view part) const {
  std::lock_guard lock(mutex_);
  return Find(part) != nullptr;
}

bool OpcPackage::HasOriginal(std::string_view part) const {
  std::lock_guard lock(mutex_);
  auto found = by_name_.find(Lower(part));
  return found != by_name_.end() && found->second->index != kNotInArchive;
}

bool OpcPackage::IsChanged(std::string_view part) const {
  std::lock_guard lock(mutex_);
  const Item* item = Find(part);
  return item && item->changed;
}

std::string OpcPackage::Read(std::string_view part) const {
  {
    std::lock_guard lock(mutex_);
    const Item* item = Find(part);
    if (!item) FailMissing(part);
    if (item->changed) return item->packed ? Unpack(*item->packed, part) : item->bytes;
  }
  return ReadOriginal(part);
}

std::string OpcPackage::ReadOriginal(std::string_view part) const {
  std::size_t index = kNotInArchive;
  {
    std::lock_guard lock(mutex_);
    auto found = by_name_.find(Lower(part));
    if (found != by_name_.end()) index = found->second->index;
  }
  if (index == kNotInArchive) FailMissing(part);
  std::string bytes = archive_->Read(index);
  return IsXmlPart(part, bytes) ? XmlAsUtf8(std::move(bytes), part) : bytes;
}

void OpcPackage::ForgetRelationships() {
  relationships_.clear();
  relationship_count_ = 0;
}

void OpcPackage::Write(std::string_view part, std::string bytes) {
  std::unique_ptr<PackedBytes> packed;
  if (bytes.size() >= kLargePart) {
    packed = std::make_unique<PackedBytes>(Pack(bytes));
    bytes = {};
  }
  std::lock_guard lock(mutex_);
  Item* item = FindAny(part);
  if (!item) {
    item = &items_.emplace_back();
    item->name = part;
    by_name_.emplace(Lower(part), item);
  }
  item->changed = true;
  item->removed = false;
  item->bytes = std::move(bytes);
  item->packed = std::move(packed);
  if (part.ends_with(".rels")) ForgetRelationships();
}

void OpcPackage::Revert(std::string_view part) {
  std::lock_guard lock(mutex_);
  Item* item = FindAny(part);
  if (!item || item->index == kNotInArchive) return;
  item->changed = item->removed = false;
  item->bytes = {};
  item->packed.reset();
  if (part.ends_with(".rels")) ForgetRelationships();
}

void OpcPackage::Remove(std::string_view part) {
  std::lock_guard lock(mutex_);
  for (const std::string& name : {std::string(part), RelationshipsPartOf(part)}) {
    Item* item = FindAny(name);
    if (!item) continue;
    item->removed = true;
    item->bytes = {};
    item->packed.reset();
  }
  ForgetRelationships();
}

std::string OpcPackage::ContentTypeOf(std::string_view part) const {
  if (!Has(kContentTypes)) return {};
  std::string text = Read(kContentTypes);
  std::string by_extension;
  std::string by_name;
  ForEachChild(kContentTypes, text, [&](XmlScanner& scanner) {
    if (IsOverrideOf(scanner, part)) {
      by_name = DecodedAttribute(scanner, "ContentType");
    } else if (scanner.local_name() == "Default" &&
               SameName(DecodedAttribute(scanner, "Extension"), ExtensionOf(part))) {
      by_extension = DecodedAttribute(scanner, "ContentType");
    }
  });
  return by_name.empty() ? by_extension : by_name;
}

void OpcPackage::SetContentType(std::string_view part, std::string_view content_type) {
  if (ContentTypeOf(part) == content_type) return;
  RemoveContentType(part);
  if (ContentTypeOf(part) == content_type) return;
  std::string text(Has(kContentTypes) ? Read(kContentTypes) : std::string(kEmptyContentTypes));
  Write(kContentTypes,
        WithLastChild(text, "Override",
                      " PartName=\"/" + EncodeXmlAttribute(part) + "\" ContentType=\"" +
                          EncodeXmlAttribute(content_type) + "\""));
}

void OpcPackage::RemoveContentType(std::string_view part) {
  if (!Has(kContentTypes)) return;
  std::string text = Read(kContentTypes);
  TextPatch patch(text);
  ForEachChild(kContentTypes, text, [&](XmlScanner& scanner) {
    if (!IsOverrideOf(scanner, part)) return;
    auto [begin, end] = ElementPlace(scanner);
    patch.Replace(begin, end, "");
  });
  if (!patch.empty()) Write(kContentTypes, patch.Apply());
}

void OpcPackage::EnsureDefaultContentType(std::string_view extension,
                                          std::string_view content_type) {
  std::string text(Has(kContentTypes) ? Read(kContentTypes) : std::string(kEmptyContentTypes));
  bool declared = false;
  std::size_t after_defaults = 0;
  ForEachChild(kContentTypes, text, [&](XmlScanner& scanner) {
    if (scanner.local_name() != "Default") return;
    declared |= SameName(DecodedAttribute(scanner, "Extension"), extension);
    after_defaults = ElementPlace(scanner).second;
  });
  if (declared) return;
  std::string attributes = " Extension=\"" + EncodeXmlAttribute(extension) + "\" ContentType=\"" +
                           EncodeXmlAttribute(content_type) + "\"";
  if (after_defaults == 0) {
    Write(kContentTypes, WithLastChild(text, "Default", attributes));
    return;
  }
  // The last default's own name carries the prefix, if any.
  std::size_t tag = text.rfind("Default ", after_defaults);
  std::size_t bracket = text.rfind('<', tag);
  std::string prefix = text.substr(bracket + 1, tag - bracket - 1);
  text.insert(after_defaults, "<" + prefix + "Default" + attributes + "/>");
  Write(kContentTypes, std::move(text));
}

const std::vector<Relationship>& OpcPackage::RelationshipsOf(std::string_view part) const {
  std::string key = Lower(part);
  {
    std::lock_guard lock(mutex_);
    auto found = relationships_.find(key);
    if (found != relationships_.end()) return found->second;
  }
  std::vector<Relationship> relationships;
  const std::size_t room = kMostRelationships - relationship_count_;
  std::string relationships_part = RelationshipsPartOf(part);
  if (Has(relationships_part)) {
    std::string text = Read(relationships_part);
    ForEachChild(relationships_part, text, [&](XmlScanner& scanner) {
      if (scanner.local_name() != "Relationship") return;
      if (relationships.size() == room) {
        throw XmlError(
            "the package has more than " + std::to_string(kMostRelationships) + " relationships",
            scanner.begin(), FileError::Code::kTooLarge);
      }
      Relationship relationship{DecodedAttribute(scanner, "Id"), DecodedAttribute(scanner, "Type"),
                                DecodedAttribute(scanner, "Target"),
                                scanner.Attribute("TargetMode") == "External"};
      if (!relationship.external && !relationship.target.starts_with('#')) {
        std::string target = ResolveTarget(part, relationship.target);
        // What no part can be named leads to none, and must not become one.
        relationship.external = !IsPartName(target);
        if (!relationship.external) relationship.target = std::move(target);
      }
      relationships.push_back(std::move(relationship));
    });
  }
  std::lock_guard lock(mutex_);
  relationship_count_ += relationships.size();
  return relationships_[key] = std::move(relationships);
}

std::string OpcPackage::AddRelationship(std::string_view part, std::string_view type,
                                        std::string_view target) {
  std::string resolved = target.starts_with('/') || target.starts_with("../")
                             ? ResolveTarget(part, target)
                             : std::string(target);
  return AppendRelationship(part, type, RelativeTarget(part, resolved), /*external=*/false);
}

std::optional<std::string> OpcPackage::CopyExternalRelationship(const OpcPackage& source,
                                                                std::string_view source_part,
                                                                std::string_view id,
                                                                std::string_view part) {
  for (const Relationship& relationship : source.RelationshipsOf(source_part)) {
    if (relationship.id != id) continue;
    if (!relationship.external) return std::nullopt;
    const Relationship copied = relationship;
    return AppendRelationship(part, copied.type, copied.target, /*external=*/true);
  }
  return std::nullopt;
}

std::string OpcPackage::AppendRelationship(std::string_view part, std::string_view type,
                                           std::string_view target, bool external) {
  std::set<std::string> used;
  for (const Relationship& relationship : RelationshipsOf(part)) used.insert(relationship.id);
  int number = 1;
  while (used.contains("rId" + std::to_string(number))) ++number;
  std::string id = "rId" + std::to_string(number);
  std::string relationships_part = RelationshipsPartOf(part);
  std::string text(Has(relationships_part) ? Read(relationships_part)
                                           : std::string(kEmptyRelationships));
  Write(relationships_part, WithLastChild(text, "Relationship",
                                          " Id=\"" + id + "\" Type=\"" + EncodeXmlAttribute(type) +
                                              "\" Target=\"" + EncodeXmlAttribute(target) + "\"" +
                                              (external ? " TargetMode=\"External\"" : "")));
  EnsureDefaultContentType("rels", "application/vnd.openxmlformats-package.relationships+xml");
  return id;
}

void OpcPackage::SetTarget(std::string_view part, std::string_view id, std::string_view target) {
  std::string relationships_part = RelationshipsPartOf(part);
  std::string text = Read(relationships_part);
  TextPatch patch(text);
  ForEachChild(relationships_part, text, [&](XmlScanner& scanner) {
    const std::optional<std::string_view> old = scanner.Attribute("Target");
    if (old && DecodedAttribute(scanner, "Id") == id) {
      patch.Replace(*old, EncodeXmlAttribute(target));
    }
  });
  if (!patch.empty()) Write(relationships_part, patch.Apply());
}

void OpcPackage::RemoveRelationship(std::string_view part, std::string_view id) {
  std::string relationships_part = RelationshipsPartOf(part);
  if (!Has(relationships_part)) return;
  std::string text = Read(relationships_part);
  TextPatch patch(text);
  ForEachChild(relationships_part, text, [&](XmlScanner& scanner) {
    if (DecodedAttribute(scanner, "Id") != id) return;
    auto [begin, end] = ElementPlace(scanner);
    patch.Replace(begin, end, "");
  });
  if (!patch.empty()) Write(relationships_part, patch.Apply());
}

std::string OpcPackage::FreePartName(std::string_view stem, std::string_view extension) const {
  for (int number = 1;; ++number) {
    std::string name = std::string(stem) + std::to_string(number) + std::string(extension);
    if (!Has(name)) return name;
  }
}

std::unique_ptr<ReplacementFile> OpcPackage::WriteBeside(const std::filesystem::path& path) {
  auto file = std::make_unique<ReplacementFile>(path);
  std::vector<ZipOutput> outputs;
  std::deque<PackedBytes> packed;
  for (const Item& item : items_) {
    if (item.removed) continue;
    ZipOutput& output = outputs.emplace_back();
    output.name = item.name;
    output.source_index = item.index;
    if (!item.changed) continue;
    output.packed = item.packed ? item.packed.get() : &packed.emplace_back(Pack(item.bytes));
  }
  WriteZip(*file, archive_.get(), outputs);
  return file;
}

}  // namespace vantora::embedded
