// A directory of sheets for tests: the ids are the places in the list.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "formula/formula.h"
#include "formula/lexical.h"

namespace vantora::embedded {

class SheetList : public SheetDirectory {
 public:
  explicit SheetList(std::vector<std::string> names) : names_(std::move(names)) {}

  std::optional<int> IdOf(std::string_view name) const override {
    for (std::size_t id = 0; id < names_.size(); ++id) {
      if (EqualIgnoringAsciiCase(names_[id], name)) return static_cast<int>(id);
    }
    return std::nullopt;
  }
  const std::string& NameOf(int id) const override { return names_[id]; }
  int PositionOf(int id) const override { return id; }

 private:
  std::vector<std::string> names_;
};

}  // namespace vantora::embedded
