// Which sheets formulas name explicitly.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vantora {

// The sheet names that formulas refer to with a "!", each once, in order of first appearance.
class ReferencedSheets {
 public:
  static constexpr int kMost = 50;

  // Adds the names in one formula ("=Budget!B2+Rates!C3"). A name is what stands before the "!" up
  // to the last delimiter; texts in double quotes name nothing. Blanks, apostrophes and minus signs
  // delimit nothing, so that a quoted name keeps its apostrophes ("'Data 01'"). Throws HostError 9
  // for one name more than kMost.
  void Add(std::string_view formula);

  const std::vector<std::string>& names() const { return names_; }

 private:
  void AddName(std::string name);

  std::vector<std::string> names_;
};

}  // namespace vantora
