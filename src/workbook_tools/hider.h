// The model's saving and opening: a saved model shows only its title sheet, with the instruction to
// enable macros, until its macros bring the other sheets back.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/public_object.h"

namespace vantora {

class clsHider : public BoundObject {
 public:
  explicit clsHider(Services& services) : BoundObject("clsHider", services) {}

  // After opening: shows every sheet, takes the instruction away, goes back to the sheet of the
  // last save, and in normal mode protects the sheets with the flag "P".
  void AtOpen();
  // Saves the model itself with its sheets hidden and then puts them back as they were. With
  // `save_as_ui` the user is asked for the file.
  void BeforeSave(bool save_as_ui);

 private:
  struct SheetState {
    host::WorksheetPtr sheet;
    std::optional<host::XlSheetVisibility> visible;
    bool was_protected = false;
  };
  struct SaveTarget {
    std::string filename;
    host::XlFileFormat format;
  };
  // Hides the sheets, saves and puts them back.
  void SaveHidden(const std::optional<SaveTarget>& target, const std::string& active_sheet);
  // Asks for the file; nullopt when the user cancels.
  std::optional<SaveTarget> AskForTarget();
  std::vector<SheetState> HideSheets();
  void RestoreSheets(const std::vector<SheetState>& states, const std::string& active_sheet);
  void Save(const std::optional<SaveTarget>& target);
  void LocateMessage();
  void WriteMessage(const std::string& text);
  void ActivateSheet(const std::string& name);
  void ProtectFlaggedSheets();
  bool IsNewFormatHost();

  host::WorksheetPtr title_sheet_;
  int message_row_ = 0;
  int message_column_ = 0;
};

}  // namespace vantora
