#include "hosts/excel/excel_names.h"

#include "hosts/excel/call_error.h"
#include "hosts/excel/excel_range.h"

namespace vantora::excel {

std::string ExcelName::OwnName() { return object_.GetText(Member::kNameName); }

host::RangePtr ExcelName::RefersToRange() {
  return std::make_shared<ExcelRange>(object_.Child(Member::kNameRefersToRange));
}

void ExcelName::Delete() { object_.Call(Member::kNameDelete); }

host::NamePtr ExcelNames::Item(std::string_view name) {
  return std::make_shared<ExcelName>(object_.Child(Member::kNamesItem, {name}));
}

bool ExcelNames::Add(std::string_view name, std::string_view refers_to_r1c1) {
  try {
    // Nothing comes back for a reference to what does not exist.
    return object_
        .FindChild(Member::kNamesAdd, {}, {{L"Name", name}, {L"RefersToR1C1", refers_to_r1c1}})
        .has_value();
  } catch (const HostError& error) {
    if (IsRefusal(error)) return false;
    throw;
  }
}

}  // namespace vantora::excel
