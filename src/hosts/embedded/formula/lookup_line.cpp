#include "formula/lookup_line.h"

namespace vantora::embedded {

int FindSorted(const Line& line, const Scalar& wanted, bool ascending) {
  int low = 0, high = line.length() - 1, result = -1;
  while (low <= high) {
    const int middle = low + (high - low) / 2;
    const std::optional<Scalar> at_middle = line.TryAt(middle);
    if (!at_middle) return -1;
    Scalar value = *at_middle;
    int found = middle;
    if (value.kind != wanted.kind) {
      found = line.FindFirst(middle, [&](int i, const Scalar& element) {
        value = element;
        return i > high || element.kind == wanted.kind;
      });
    }
    if (found < 0 || found > high) {
      high = middle - 1;
      continue;
    }
    const int order = CompareScalars(value, wanted);
    if (order == 0 && !ascending) {
      result = found;
      high = middle - 1;
    } else if (ascending ? order <= 0 : order > 0) {
      result = found;
      low = found + 1;
    } else {
      high = middle - 1;
    }
  }
  return result;
}

}  // namespace vantora::embedded
