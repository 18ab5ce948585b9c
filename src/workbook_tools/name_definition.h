// One run of clsNameManagement.NameDefinition.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/host.h"
#include "core/user_interface.h"
#include "dialogs/frm_naming01.h"
#include "dialogs/frm_naming02.h"

namespace vantora {

class NameDefinitionRun {
 public:
  // Reads how the active sheet is laid out. Throws HostError.
  NameDefinitionRun(host::Application& application, UserInterface& user_interface);

  // Works through the selection until its end or until the user cancels. Throws HostError.
  void Run();

 private:
  // A name-column cell that is to be rewritten.
  struct PendingCell {
    host::RangePtr cell;
    std::string text;
    int color_index;
  };
  // What is known of the row at work.
  struct Row {
    int number;
    host::RangePtr name_cell;
    // As it is to be defined; "" for none.
    std::string name;
  };
  enum class Next { kGoOn, kSkipRow, kCancel };

  Next DefineRow(int row);
  // Sees to it that the row's name is free, or another one is taken.
  Next ResolveNameInUse(Row& row);
  Next AskAboutNameInUse(Row& row, const host::RangePtr& other);
  // Sees to the name that the row has already.
  Next ResolveExistingName(Row& row);
  Next AskAboutExistingName(Row& row, const host::RangePtr& row_range, const std::string& found);
  void Define(const Row& row);
  // The cells that the name refers to; null when there is no such name.
  host::RangePtr CellsOf(const std::string& name);
  void DeleteNameOf(const host::RangePtr& range);
  void Remember(host::RangePtr cell, std::string text, int color_index);
  void RewriteCells();
  void Report();

  UserInterface& user_interface_;
  host::WorksheetPtr sheet_;
  host::NamesPtr names_;
  host::RangePtr selection_;
  int name_column_;
  int first_column_;
  int last_column_;
  std::vector<PendingCell> pending_;
  bool names_deleted_ = false;
  bool names_invalid_ = false;
  // Made when first needed.
  std::optional<frmNaming01> name_in_use_;
  std::optional<frmNaming02> row_has_name_;
};

}  // namespace vantora
