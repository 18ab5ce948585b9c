// Sheets and markup for the tests of what stands around the cells.
#pragma once

#include <algorithm>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "formula/formula.h"
#include "package/sheet_markup.h"

namespace vantora::embedded {

// Sheet 0 is "Plan", sheet 1 "Owner's Equity".
class TwoSheets : public SheetDirectory {
 public:
  std::optional<int> IdOf(std::string_view name) const override {
    auto found = std::ranges::find(names_, name);
    if (found == names_.end()) return std::nullopt;
    return static_cast<int>(found - names_.begin());
  }
  const std::string& NameOf(int id) const override { return names_[id]; }
  int PositionOf(int id) const override { return id; }

 private:
  std::vector<std::string> names_{"Plan", "Owner's Equity"};
};

inline constexpr int kPlan = 0;
inline constexpr int kEquity = 1;

inline SheetMarkup MarkupOf(std::initializer_list<MarkupElement> elements) {
  SheetMarkup markup;
  markup.start =
      R"(<worksheet xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main" )"
      R"(xmlns:r="http://schemas.openxmlformats.org/officeDocument/2006/relationships">)";
  markup.end = "</worksheet>";
  markup.elements = elements;
  return markup;
}

// All elements, one after the other.
inline std::string TextOf(const SheetMarkup& markup) {
  std::string text;
  for (const MarkupElement& element : markup.elements) text += element.text;
  return text;
}

}  // namespace vantora::embedded
