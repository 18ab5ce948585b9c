#include "package/part_name.h"

#include <algorithm>
#include <cstddef>

namespace vantora::embedded {

bool IsPartName(std::string_view name) {
  if (name.empty() || name.front() == '/' || name.front() == '\\') return false;
  if (name.find(':') != std::string_view::npos || name.find('\0') != std::string_view::npos) {
    return false;
  }
  while (!name.empty()) {
    std::size_t slash = std::min(name.find_first_of("/\\"), name.size());
    if (name.substr(0, slash) == "..") return false;
    name.remove_prefix(std::min(slash + 1, name.size()));
  }
  return true;
}

}  // namespace vantora::embedded
