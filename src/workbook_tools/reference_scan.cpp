#include "workbook_tools/reference_scan.h"

#include <algorithm>

#include "core/host_error.h"

namespace vantora {
namespace {

constexpr std::string_view kDelimiters = ",.<>?/\\:;$%^&*()+=";
// What is left of a reference whose sheet is gone.
constexpr std::string_view kLostReference = "#REF";

}  // namespace

void ReferencedSheets::Add(std::string_view formula) {
  // A formula without any mark, as nearly all are, is done with at once.
  if (formula.find('!') == std::string_view::npos) return;
  std::string token;
  bool in_quotes = false;
  for (char c : formula) {
    if (c == '"') {
      in_quotes = !in_quotes;
    } else if (c == '!' && !in_quotes && !token.empty() && token != kLostReference) {
      AddName(std::move(token));
      token.clear();
    } else if (in_quotes || kDelimiters.find(c) == std::string_view::npos) {
      token += c;
    } else {
      token.clear();
    }
  }
}

void ReferencedSheets::AddName(std::string name) {
  if (std::find(names_.begin(), names_.end(), name) != names_.end()) return;
  if (names_.size() == kMost) {
    throw HostError(HostError::kSubscriptOutOfRange,
                    "Subscript out of range: the formulas refer to more than " +
                        std::to_string(kMost) + " other worksheets; \"" + name + "\" is one more.",
                    "Orvanemcro1");
  }
  names_.push_back(std::move(name));
}

}  // namespace vantora
