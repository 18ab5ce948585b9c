// Asks which worksheet is to be copied into which workbook, and shows afterwards what came of it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/form.h"

namespace vantora {

class frmCopyWorksheet final : public Form {
 public:
  frmCopyWorksheet();

  // Fill the two lists. What was chosen before stays chosen by its name.
  void SetSourceNames(const std::vector<std::string>& names);
  void SetTargetNames(const std::vector<std::string>& names);

  // Whether only the selected area is to be copied, not the entire sheet.
  bool IsSourceSelectionARange() const { return selected_area_.pressed(); }
  void SetIsSourceSelectionARange(bool is_a_range);
  // Whether the target is to take over the colour palette.
  bool CopyColors() const { return copy_colors_.checked(); }
  void SetCopyColors(bool copies) { copy_colors_.SetChecked(copies); }
  // A name that the list does not have is shown, but is no entry of it.
  const std::string& SourceWorksheetName() const { return source_name_; }
  void SetSourceWorksheetName(std::string_view name);
  bool IsEmptySourceName() const { return source_name_.empty(); }
  const std::string& TargetWorkbookName() const { return target_name_; }
  void SetTargetWorkbookName(std::string_view name);
  bool IsEmptyTargetName() const { return target_name_.empty(); }
  // Sets SourceWorksheetName; gives it with " selected area" or " entire sheet" behind it.
  std::string SourceRangeName() const;
  void SetSourceRangeName(std::string_view name) { SetSourceWorksheetName(name); }

  // True unless the dialog was closed with butCopy.
  bool IsCancelled() const { return is_cancelled_; }
  void SetMessage(std::string_view text);
  void EnableCopy(bool enable);

 private:
  void OnUnload() override { is_cancelled_ = true; }
  void Copy();
  void Cancel();

  ChoiceList& source_;
  ChoiceList& target_;
  OptionButton& entire_sheet_;
  OptionButton& selected_area_;
  CheckBox& copy_colors_;
  TextBox& result_;
  Button& copy_;
  Button& cancel_;
  std::string source_name_;
  std::string target_name_;
  bool is_cancelled_ = true;
};

}  // namespace vantora
