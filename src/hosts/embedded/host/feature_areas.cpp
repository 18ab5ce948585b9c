#include "host/feature_areas.h"

#include <algorithm>
#include <string_view>

#include "package/area_list.h"
#include "package/sheet_features.h"

namespace vantora::embedded {
namespace {

bool HoldsFeatures(const MarkupElement& element) {
  static constexpr std::string_view kNames[] = {"mergeCells", "conditionalFormatting",
                                                "dataValidations", "hyperlinks", "extLst"};
  return !element.text.empty() && std::ranges::find(kNames, element.name) != std::end(kNames);
}

}  // namespace

const FeatureAreas::Known& FeatureAreas::Look(int sheet, const SheetMarkup& markup) {
  auto [found, is_new] = known_.try_emplace(sheet);
  Known& known = found->second;
  auto seen = known.elements.begin();
  bool same = !is_new;
  for (const MarkupElement& element : markup.elements) {
    if (!same || !HoldsFeatures(element)) continue;
    same = seen != known.elements.end() && *seen == element.text;
    if (same) ++seen;
  }
  if (same && seen == known.elements.end()) return known;
  known = {};
  for (const MarkupElement& element : markup.elements) {
    if (HoldsFeatures(element)) known.elements.push_back(element.text);
  }
  known.merged = embedded::MergedAreas(markup);
  known.all = AreasOfFeatures(markup);
  return known;
}

bool FeatureAreas::TouchedBy(int sheet, const SheetMarkup& markup,
                             std::initializer_list<Area> areas) {
  const Known& known = Look(sheet, markup);
  return std::ranges::any_of(areas, [&](const Area& area) {
    return std::ranges::any_of(known.all, [&](const Area& one) { return one.Intersects(area); });
  });
}

const std::vector<Area>& FeatureAreas::MergedAreas(int sheet, const SheetMarkup& markup) {
  return Look(sheet, markup).merged;
}

}  // namespace vantora::embedded
