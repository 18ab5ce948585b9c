#include "host/sheet_names.h"

#include <algorithm>

#include "core/convert.h"

namespace vantora::embedded {
namespace {

// In UTF-16 units, as Excel counts.
constexpr int kLongestName = 31;
constexpr std::string_view kForbidden = ":\\/?*[]";
// The sheet on which Excel lists the changes of a shared workbook.
constexpr std::string_view kReserved = "History";

int Utf16Length(std::string_view text) {
  int length = 0;
  for (unsigned char c : text) {
    const bool continues = (c & 0xC0) == 0x80;
    const bool is_pair = c >= 0xF0;
    length += continues ? 0 : is_pair ? 2 : 1;
  }
  return length;
}

}  // namespace

std::optional<std::string> FaultOfSheetName(std::string_view name) {
  if (name.empty()) return "a sheet must have a name";
  if (Utf16Length(name) > kLongestName) {
    return "it is longer than " + std::to_string(kLongestName) + " characters";
  }
  const std::size_t forbidden = name.find_first_of(kForbidden);
  if (forbidden != std::string_view::npos) {
    return "it contains the character " + std::string(name.substr(forbidden, 1));
  }
  if (name.front() == '\'' || name.back() == '\'') return "it begins or ends with an apostrophe";
  const bool has_control_character =
      std::any_of(name.begin(), name.end(), [](unsigned char c) { return c < 0x20; });
  if (has_control_character) return "it contains a control character";
  if (EqualsIgnoreCase(name, kReserved)) return "the name is reserved";
  return std::nullopt;
}

std::string FreeSheetName(const WorkbookModel& model) {
  std::string name;
  int number = 0;
  do {
    name = "Sheet" + std::to_string(++number);
  } while (model.IdOf(name));
  return name;
}

}  // namespace vantora::embedded
