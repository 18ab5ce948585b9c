// The model's menu: sheets by group, then the entries of the Reference Sheet's menu table.
#include <optional>

#include "core/common.h"
#include "core/model_layout.h"
#include "presentation/menu_management.h"
#include "refsheet/ref_sheet.h"

namespace vantora {
namespace {

using host::CommandBarControl;
using host::CommandBarControlPtr;
using host::MsoControlType;

constexpr std::string_view kModelMenuTag = "Vantora";

// The sheets of one group in the workbook's order.
struct SheetGroup {
  int count = 0;
  std::array<std::string, model::kSheetsOfAMenuGroup> names;
  std::array<int, model::kSheetsOfAMenuGroup> face_ids{};

  void Add(std::string name, int face_id) {
    if (count == model::kSheetsOfAMenuGroup) {
      throw MacroError(HostError::kSubscriptOutOfRange,
                       "Subscript out of range: a group of the menu holds 15 sheets, and there is "
                       "no room for \"" +
                           name + "\".");
    }
    names[count] = std::move(name);
    face_ids[count] = face_id;
    ++count;
  }
};

struct TableRow {
  std::string item;
  std::string sub_item;
  std::string macro;
  int face_id;
};

CommandBarControlPtr AddControl(CommandBarControl& popup, MsoControlType type) {
  return popup.Controls()->Add(type, std::nullopt);
}

CommandBarControlPtr AddTablePopup(CommandBarControl& parent, const TableRow& row,
                                   bool begin_group) {
  CommandBarControlPtr popup = AddControl(parent, MsoControlType::kPopup);
  popup->SetCaption(row.item);
  popup->SetVisible(true);
  popup->SetBeginGroup(begin_group);
  return popup;
}

CommandBarControlPtr AddTableButton(CommandBarControl& parent, std::string_view caption,
                                    const TableRow& row, bool begin_group) {
  CommandBarControlPtr button = AddControl(parent, MsoControlType::kButton);
  button->SetCaption(caption);
  button->SetOnAction(row.macro);
  button->SetVisible(true);
  if (row.face_id > 0) button->SetFaceId(row.face_id);
  button->SetBeginGroup(begin_group);
  return button;
}

}  // namespace

void clsMenuManagement::CreateVAMenuBar() {
  if (!initialized()) return;
  std::array<SheetGroup, model::kMenuGroups> groups;
  for (const host::WorksheetPtr& sheet : ActiveWorkbookOf(*application())->Worksheets()) {
    if (!SheetHasFlag(sheet, model::kMenuSheetFlag)) continue;
    const int group = FlagNumber(sheet, model::kMenuSheetFlag);
    // Without a group the sheet is not in the menu.
    if (group < 1 || group > model::kMenuGroups) continue;
    groups[group - 1].Add(sheet->Name(), FlagNumber(sheet, model::kMenuIconFlag));
  }

  CommandBarControlPtr model_popup = AddModelPopup(*ActiveMenuBar());
  model_popup->SetCaption("&Vantora");
  model_popup->SetTag(kModelMenuTag);
  for (const SheetGroup& group : groups) {
    for (int i = 0; i < group.count; ++i) {
      AddSheetButton(*model_popup, group.names[i], i == 0, group.face_ids[i]);
    }
  }
  AddTableEntries(*model_popup);
}

void clsMenuManagement::RemoveVAMenuBar() { DeleteControlsByTag(kModelMenuTag); }

void clsMenuManagement::AddSheetButton(CommandBarControl& popup, std::string_view sheet_name,
                                       bool begin_group, int face_id) {
  CommandBarControlPtr button = AddControl(popup, MsoControlType::kButton);
  button->SetCaption(sheet_name);
  button->SetVisible(true);
  button->SetOnAction("VA_SelSheet");
  button->SetBeginGroup(begin_group);
  if (face_id > 0) button->SetFaceId(face_id);
}

void clsMenuManagement::AddTableEntries(CommandBarControl& model_popup) {
  clsRefSheet ref_sheet(services());
  InitInner(ref_sheet);
  if (!ref_sheet.MenusListIsDefined()) return;
  // Only the table's first row may begin a group, also when it adds nothing: the model's rule.
  bool begin_group = true;
  // What sub-items go to. A button counts although it takes none, so that a sub-item below it fails
  // instead of going to an earlier popup: the model's rule.
  CommandBarControlPtr sub_popup;
  for (ref_sheet.MenusListIteratorInit(); ref_sheet.MenusListIteratorIsMore();
       ref_sheet.MenusListIteratorNext()) {
    const TableRow row{.item = ref_sheet.MenusListItem(),
                       .sub_item = ref_sheet.MenusListSubItem(),
                       .macro = ref_sheet.MenusListMacroName(),
                       .face_id = ref_sheet.MenusListFaceID()};
    if (!row.item.empty()) {
      sub_popup = row.macro.empty() ? AddTablePopup(model_popup, row, begin_group)
                                    : AddTableButton(model_popup, row.item, row, begin_group);
    } else if (!row.sub_item.empty() && !row.macro.empty()) {
      if (!sub_popup) {
        throw MacroError(HostError::kObjectNotSet, "The menu table's sub-item \"" + row.sub_item +
                                                       "\" stands below no item.");
      }
      AddTableButton(*sub_popup, row.sub_item, row, begin_group);
    } else if (!row.sub_item.empty()) {
      const std::string detail = "Menu table entry on Reference sheet for " + row.sub_item +
                                 " has no macro.  This is invalid.";
      ReportProgrammingError(services().user_interface, {.module = class_name(), .detail = detail});
    }
    begin_group = false;
  }
}

CommandBarControlPtr clsMenuManagement::AddModelPopup(host::CommandBar& bar) {
  std::optional<int> before;
  for (const CommandBarControlPtr& control : bar.Controls()->Items()) {
    if (control->Caption().find("Window") == std::string::npos) continue;
    before = control->Index();
    break;
  }
  return bar.Controls()->Add(MsoControlType::kPopup, before);
}

void clsMenuManagement::DeleteControlsByTag(std::string_view tag) {
  if (!initialized()) return;
  host::CommandBarPtr bar = ActiveMenuBar();
  while (CommandBarControlPtr control = bar->FindControl(tag)) control->Delete();
}

host::CommandBarPtr clsMenuManagement::ActiveMenuBar() {
  host::CommandBarPtr bar = application()->ActiveMenuBar();
  if (!bar) throw MacroError(HostError::kObjectNotSet, "No menu bar is shown.");
  return bar;
}

}  // namespace vantora
