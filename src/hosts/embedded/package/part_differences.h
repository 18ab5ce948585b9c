// The parts in which two packages differ.
#pragma once

#include <string>
#include <vector>

#include "package/opc_package.h"

namespace vantora::embedded {

struct PartDifference {
  enum class Kind { kRemoved, kAdded, kChanged };
  std::string part;
  Kind kind;
};

// Compares the parts by name, in the order of their names. Of a worksheet only what stands around
// its cells counts; the shared strings and the calculation chain, which follow from the cells, do
// not count at all. Throws FileError.
std::vector<PartDifference> CompareParts(const OpcPackage& before, const OpcPackage& after);

}  // namespace vantora::embedded
