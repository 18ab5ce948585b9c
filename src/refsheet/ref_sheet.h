// The Reference Sheet: the worksheet that holds the model's metadata, marked by an "X" in its cell
// A1. Flags in its row 1 tell in which column each list starts.
#pragma once

#include <array>
#include <string_view>

#include "core/public_object.h"

namespace vantora {

class clsRefSheet : public BoundObject {
 public:
  explicit clsRefSheet(Services& services) : BoundObject("clsRefSheet", services) {}

  // Writes the component's version line into cell C6. Does nothing unless initialised.
  void PutDLLVersion(std::string_view version_text);

 protected:
  // Finds the sheet and reads where its lists are; fixed until the next Init. Without a Reference
  // Sheet the object stays unusable; missing flags are reported and leave it usable.
  bool Bind() override;

 private:
  enum List { kNames, kKeys, kKeyColumns, kKeySheets, kDiscrepancies, kMenus, kCharts, kConfigs };
  static constexpr int kLists = kConfigs + 1;

  void ReadListFlags();
  void ReportMissingFlags();

  host::WorksheetPtr sheet_;
  // The row of each list's first entry.
  int lists_row_ = 0;
  // The first column of each list, indexed by List; 0 when its flag is missing.
  std::array<int, kLists> list_columns_{};
};

}  // namespace vantora
