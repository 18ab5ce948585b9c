// The defined names of an open workbook as its macros work on them.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "formula/calculator.h"

namespace vantora::embedded {

// Cells and the sheet they stand on.
struct Place {
  int sheet;
  Area area;
};

// A name as it is found again: names move in the model's list.
struct NameKey {
  std::string name;
  int scope = -1;
};

class NameList {
 public:
  // Both must outlive the list.
  NameList(WorkbookModel& model, Calculator& calculator) : model_(model), calculator_(calculator) {}

  // The name as a macro asks for it: "Sheet!name" a sheet's own, "name" that of `from_sheet` or the
  // workbook's. Nullopt when there is none.
  std::optional<NameKey> Find(std::string_view name, int from_sheet) const;
  // Null when the name is gone.
  const DefinedName* Get(const NameKey& key) const;
  // As a macro reads it: "Sheet!name" for a sheet's own, built-in names without their prefix.
  std::string DisplayName(const NameKey& key) const;

  // Defines a name of the workbook, or defines it anew (with the new spelling, its other properties
  // kept). False when the name or the reference is invalid.
  bool Define(std::string_view name, std::string_view refers_to_r1c1, int active_sheet);
  // Does nothing when it is gone.
  void Delete(const NameKey& key);

  // The cells that a name refers to; nullopt when it refers to something else. A reference without
  // a sheet means `own_sheet`, or the sheet that the name belongs to.
  std::optional<Place> PlaceOf(const DefinedName& name, int own_sheet) const;
  // The name that refers to exactly these cells, of several the first by alphabet.
  std::optional<NameKey> NameOf(const Place& place);
  // What names refer to changed otherwise (columns were inserted).
  void Forget() { known_names_.reset(); }

 private:
  // Case-folded name and scope.
  using SortKey = std::pair<std::u32string, int>;

  bool KnowsPlaces() const { return known_names_ == model_.names.size(); }
  std::optional<std::pair<int, Area>> KeyOf(const DefinedName& name) const;
  void AddPlace(const DefinedName& name);
  void RemovePlace(const DefinedName& name);

  WorkbookModel& model_;
  Calculator& calculator_;
  // The names by the cells that they refer to, so that asking for the names of thousands of rows
  // does not read all names for each.
  std::map<std::pair<int, Area>, std::map<SortKey, NameKey>> places_;
  // How many names `places_` was made of; nullopt when it has to be made anew.
  std::optional<std::size_t> known_names_;
};

}  // namespace vantora::embedded
