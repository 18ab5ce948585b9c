// The list of dashboard configurations.
#include <algorithm>

#include "core/cell_place.h"
#include "refsheet/ref_sheet.h"

namespace vantora {
namespace {

constexpr int kNameOffset = 1;

}  // namespace

bool clsRefSheet::ConfigsListIsDefined() { return IsDefined(kConfigs); }

void clsRefSheet::ConfigsListGet(std::vector<std::string>& configs) {
  if (!ConfigsListIsDefined()) return;
  std::fill(configs.begin(), configs.end(), "");
  config_count_ = 0;
  const int column = column_of(kConfigs);
  for (int row = lists_row_;; ++row) {
    const std::string text = TrimmedTextAt(row, column);
    const int number = text.empty() ? 0 : IntegerIn({*sheet_, row, column}, Value(text));
    std::string name = TrimmedTextAt(row, column + kNameOffset);
    if (name.empty() || number < 1) return;
    if (number >= std::ssize(configs)) continue;
    configs[static_cast<std::size_t>(number)] = std::move(name);
    ++config_count_;
  }
}

int clsRefSheet::cCount() { return initialized() ? config_count_ : 0; }

void clsRefSheet::ConfigsListPut(const std::vector<std::string>& configs) {
  if (!ConfigsListIsDefined()) return;
  const int count = static_cast<int>(std::ssize(configs)) - 1;
  if (count < 1) return;
  const int column = column_of(kConfigs);
  const int last_row = lists_row_ + count - 1;
  sheet_->Activate();
  sheet_->Range(lists_row_, column, last_row, column + kNameOffset)->Select();
  Selection()->Clear();

  // Rows that are left over show 0, which ends the list.
  std::vector<Value> numbers(static_cast<std::size_t>(count), Value(0));
  std::vector<Value> names(numbers.size());
  std::size_t filled = 0;
  for (int number = 1; number <= count; ++number) {
    const std::string& name = configs[static_cast<std::size_t>(number)];
    if (name.empty()) continue;
    numbers[filled] = Value(number);
    names[filled] = Value(name);
    ++filled;
  }
  sheet_->Range(lists_row_, column, last_row, column)->SetValues(numbers);
  sheet_->Range(lists_row_, column + kNameOffset, last_row, column + kNameOffset)->SetValues(names);
}

void clsRefSheet::ConfigsListIteratorInit() {
  if (BeginIteration(kConfigs, config_iteration_)) ConfigsListIteratorNext();
}

void clsRefSheet::ConfigsListIteratorNext() {
  if (!ConfigsListIsDefined()) return;
  const int row = ++config_iteration_.row;
  config_.name = TrimmedTextAt(row, column_of(kConfigs) + kNameOffset);
  const int column = column_of(kConfigs);
  config_.number = IntegerIn({*sheet_, row, column}, Value(TrimmedTextAt(row, column)));
  if (config_.name.empty()) config_iteration_.is_more = false;
}

bool clsRefSheet::ConfigsListIteratorIsMore() { return initialized() && config_iteration_.is_more; }

std::string clsRefSheet::ConfigsName() { return initialized() ? config_.name : ""; }

int clsRefSheet::ConfigsNum() { return initialized() ? config_.number : 0; }

}  // namespace vantora
