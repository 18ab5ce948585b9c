#include "package/sheet_markup.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace vantora::embedded {
namespace {

// The children of <worksheet> in the order that the schema prescribes.
constexpr std::array<std::string_view, 39> kSchemaOrder = {"sheetPr",
                                                           "dimension",
                                                           "sheetViews",
                                                           "sheetFormatPr",
                                                           "cols",
                                                           "sheetData",
                                                           "sheetCalcPr",
                                                           "sheetProtection",
                                                           "protectedRanges",
                                                           "scenarios",
                                                           "autoFilter",
                                                           "sortState",
                                                           "dataConsolidate",
                                                           "customSheetViews",
                                                           "mergeCells",
                                                           "phoneticPr",
                                                           "conditionalFormatting",
                                                           "dataValidations",
                                                           "hyperlinks",
                                                           "printOptions",
                                                           "pageMargins",
                                                           "pageSetup",
                                                           "headerFooter",
                                                           "rowBreaks",
                                                           "colBreaks",
                                                           "customProperties",
                                                           "cellWatches",
                                                           "ignoredErrors",
                                                           "smartTags",
                                                           "drawing",
                                                           "legacyDrawing",
                                                           "legacyDrawingHF",
                                                           "drawingHF",
                                                           "picture",
                                                           "oleObjects",
                                                           "controls",
                                                           "webPublishItems",
                                                           "tableParts",
                                                           "extLst"};

constexpr int kUnknown = -1;

int RankOf(std::string_view name) {
  auto found = std::find(kSchemaOrder.begin(), kSchemaOrder.end(), name);
  if (found == kSchemaOrder.end()) return kUnknown;
  return static_cast<int>(found - kSchemaOrder.begin());
}

int RankOf(const MarkupElement& element) {
  if (element.name != "AlternateContent") return RankOf(element.name);
  // It stands at the place of what it wraps.
  for (std::string_view wrapped : {"controls", "oleObjects"}) {
    if (element.text.find(wrapped) != std::string::npos) return RankOf(wrapped);
  }
  return kUnknown;
}

}  // namespace

MarkupElement* SheetMarkup::Find(std::string_view name) {
  auto found = std::find_if(elements.begin(), elements.end(),
                            [&](const MarkupElement& element) { return element.name == name; });
  return found == elements.end() ? nullptr : &*found;
}

const MarkupElement* SheetMarkup::Find(std::string_view name) const {
  return const_cast<SheetMarkup*>(this)->Find(name);
}

MarkupElement& SheetMarkup::FindOrInsert(std::string_view name) {
  if (MarkupElement* found = Find(name)) return *found;
  const int rank = RankOf(name);
  // After the last element that comes before it; an unknown element stays with the one it follows.
  auto place = elements.begin();
  bool follows = false;
  for (auto it = elements.begin(); it != elements.end(); ++it) {
    int other = RankOf(*it);
    if (other != kUnknown) follows = rank == kUnknown || other < rank;
    if (follows) place = std::next(it);
  }
  changed = true;
  return *elements.insert(place, MarkupElement{std::string(name), {}});
}

void SheetMarkup::Remove(std::string_view name) {
  if (std::erase_if(elements, [&](const MarkupElement& e) { return e.name == name; }) > 0) {
    changed = true;
  }
}

}  // namespace vantora::embedded
