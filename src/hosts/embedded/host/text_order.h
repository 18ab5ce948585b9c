// The order in which Excel sorts texts.
#pragma once

#include <string>
#include <string_view>

namespace vantora::embedded {

// Punctuation and signs come before digits, digits before letters; upper and lower case are the
// same. Accents count where the texts are otherwise equal, and hyphens and apostrophes, which are
// passed over else, where nothing else differs.
class TextOrder {
 public:
  explicit TextOrder(std::string_view text);

  // Less than, equal to or greater than 0.
  int Compare(const TextOrder& other) const;

 private:
  std::u32string letters_;
  std::u32string accents_;
  std::size_t passed_over_ = 0;
};

}  // namespace vantora::embedded
