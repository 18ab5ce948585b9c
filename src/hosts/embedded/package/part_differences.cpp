#include "package/part_differences.h"

#include <algorithm>
#include <set>

namespace vantora::embedded {
namespace {

bool FollowsFromCells(const std::string& content_type) {
  return content_type.ends_with("sharedStrings+xml") || content_type.ends_with("calcChain+xml");
}

// The part without what stands between the tags of its <sheetData>.
std::string WithoutCells(const std::string& text) {
  XmlScanner scanner(text);
  for (auto token = scanner.Next(); token != XmlScanner::Token::kDone; token = scanner.Next()) {
    if (token != XmlScanner::Token::kStart || scanner.local_name() != "sheetData") continue;
    const std::size_t begin = scanner.end();
    const std::size_t length = scanner.SkipElement().size();
    return text.substr(0, begin) + text.substr(begin + length);
  }
  return text;
}

bool IsWorksheet(const std::string& content_type) {
  return content_type.ends_with("worksheet+xml");
}

bool SamePart(const OpcPackage& before, const OpcPackage& after, const std::string& part) {
  const std::string old_text = before.Read(part);
  const std::string new_text = after.Read(part);
  if (old_text == new_text) return true;
  if (!IsWorksheet(before.ContentTypeOf(part)) || !IsWorksheet(after.ContentTypeOf(part))) {
    return false;
  }
  return WithoutCells(old_text) == WithoutCells(new_text);
}

}  // namespace

std::vector<PartDifference> CompareParts(const OpcPackage& before, const OpcPackage& after) {
  std::set<std::string> parts;
  for (const OpcPackage* package : {&before, &after}) {
    for (std::string& part : package->PartNames()) parts.insert(std::move(part));
  }
  std::vector<PartDifference> differences;
  for (const std::string& part : parts) {
    const OpcPackage& holder = after.Has(part) ? after : before;
    if (FollowsFromCells(holder.ContentTypeOf(part))) continue;
    if (!after.Has(part)) {
      differences.push_back({part, PartDifference::Kind::kRemoved});
    } else if (!before.Has(part)) {
      differences.push_back({part, PartDifference::Kind::kAdded});
    } else if (!SamePart(before, after, part)) {
      differences.push_back({part, PartDifference::Kind::kChanged});
    }
  }
  return differences;
}

}  // namespace vantora::embedded
