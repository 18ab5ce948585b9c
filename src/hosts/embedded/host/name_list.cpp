#include "host/name_list.h"

#include "core/convert.h"
#include "formula/name_rules.h"
#include "formula/sheet_prefix.h"

namespace vantora::embedded {
namespace {

constexpr std::string_view kBuiltInPrefix = "_xlnm.";

}  // namespace

std::optional<NameKey> NameList::Find(std::string_view name, int from_sheet) const {
  if (const std::size_t mark = name.rfind('!'); mark != std::string_view::npos) {
    std::string_view prefix = name.substr(0, mark);
    std::string sheet(prefix);
    if (prefix.size() >= 2 && prefix.front() == '\'' && prefix.back() == '\'') {
      sheet = WithoutDoubledQuotes(prefix.substr(1, prefix.size() - 2));
    }
    const std::optional<int> scope = model_.IdOf(sheet);
    if (!scope) return std::nullopt;
    const auto place = model_.PlaceOfName(name.substr(mark + 1), *scope);
    if (!place) return std::nullopt;
    return NameKey{model_.names[*place].name, *scope};
  }
  const DefinedName* found = model_.FindName(name, from_sheet);
  if (!found) return std::nullopt;
  return NameKey{found->name, found->scope};
}

const DefinedName* NameList::Get(const NameKey& key) const {
  const auto place = model_.PlaceOfName(key.name, key.scope);
  return place ? &model_.names[*place] : nullptr;
}

std::string NameList::DisplayName(const NameKey& key) const {
  std::string text;
  if (key.scope >= 0) AppendSheetPrefix(text, key.scope, key.scope, model_);
  std::string_view name = key.name;
  if (name.starts_with(kBuiltInPrefix)) name.remove_prefix(kBuiltInPrefix.size());
  return text.append(name);
}

bool NameList::Define(std::string_view name, std::string_view refers_to_r1c1, int active_sheet) {
  if (!IsValidName(name)) return false;
  std::optional<std::string> reference = ReferenceFromR1C1(refers_to_r1c1, active_sheet, model_);
  if (!reference) return false;
  const bool knows_places = KnowsPlaces();
  auto place = model_.PlaceOfName(name, -1);
  if (place) {
    if (knows_places) RemovePlace(model_.names[*place]);
  } else {
    place = model_.names.size();
    model_.names.emplace_back();
  }
  DefinedName& defined = model_.names[*place];
  defined.name = name;
  defined.refers_to = std::move(*reference);
  if (knows_places) {
    AddPlace(defined);
    known_names_ = model_.names.size();
  }
  calculator_.NamesChanged();
  return true;
}

void NameList::Delete(const NameKey& key) {
  const auto place = model_.PlaceOfName(key.name, key.scope);
  if (!place) return;
  if (KnowsPlaces()) {
    RemovePlace(model_.names[*place]);
    --*known_names_;
  }
  model_.RemoveName(*place);
  calculator_.NamesChanged();
}

std::optional<Place> NameList::PlaceOf(const DefinedName& name, int own_sheet) const {
  Formula formula = ParseFormula(name.refers_to, {1, 1}, model_);
  if (formula.text != "\x01" || formula.references.size() != 1) return std::nullopt;
  const Reference& reference = formula.references.front();
  auto area = reference.At({1, 1});
  if (!area || reference.first_sheet != reference.last_sheet) return std::nullopt;
  int sheet = reference.first_sheet != Reference::kOwnSheet ? reference.first_sheet
              : name.scope >= 0                             ? name.scope
                                                            : own_sheet;
  return Place{sheet, *area};
}

std::optional<std::pair<int, Area>> NameList::KeyOf(const DefinedName& name) const {
  // A workbook's name without a sheet means whichever is active: no range has it for good.
  const std::optional<Place> place = PlaceOf(name, Reference::kOwnSheet);
  if (!place || place->sheet == Reference::kOwnSheet) return std::nullopt;
  return std::pair(place->sheet, place->area);
}

void NameList::AddPlace(const DefinedName& name) {
  if (const auto key = KeyOf(name)) {
    places_[*key][{CaseFolded(name.name), name.scope}] = {name.name, name.scope};
  }
}

void NameList::RemovePlace(const DefinedName& name) {
  const auto key = KeyOf(name);
  if (!key) return;
  auto names = places_.find(*key);
  if (names == places_.end()) return;
  names->second.erase({CaseFolded(name.name), name.scope});
  if (names->second.empty()) places_.erase(names);
}

std::optional<NameKey> NameList::NameOf(const Place& place) {
  if (!KnowsPlaces()) {
    places_.clear();
    for (const DefinedName& name : model_.names) AddPlace(name);
    known_names_ = model_.names.size();
  }
  auto names = places_.find({place.sheet, place.area});
  if (names == places_.end()) return std::nullopt;
  return names->second.begin()->second;
}

}  // namespace vantora::embedded
