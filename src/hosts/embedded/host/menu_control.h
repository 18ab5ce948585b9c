// The menu bar of the embedded host as a tree of controls.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/host.h"

namespace vantora::embedded {

// A menu or one of its entries, as it stands at one moment.
struct MenuEntry {
  bool is_popup = false;
  std::string caption;  // with the "&" before its access key
  std::string tag;
  std::string macro;
  int face_id = 0;  // 0 for none
  bool begins_group = false;
  bool visible = true;
  std::vector<MenuEntry> entries;
};

// A control of the tree that macros work on. One that was deleted is in no tree any more, and
// objects that still refer to it fail.
struct MenuControl {
  MenuControl(host::MsoControlType type, MenuControl* parent) : type(type), parent(parent) {}
  // What stood in it may outlive it, and is deleted with it.
  ~MenuControl() {
    for (const auto& control : controls) control->parent = nullptr;
  }

  const host::MsoControlType type;
  MenuControl* parent;  // null for the bar itself, and for a deleted control
  std::string caption;
  std::string tag;
  std::string macro;
  int face_id = 0;
  bool begins_group = false;
  bool visible = true;
  std::vector<std::shared_ptr<MenuControl>> controls;
};

// A menu bar with the menus that Excel shows beside a worksheet.
std::shared_ptr<MenuControl> StandardMenuBar();

// What stands on the bar or in the menu.
std::vector<MenuEntry> EntriesOf(const MenuControl& control);

}  // namespace vantora::embedded
