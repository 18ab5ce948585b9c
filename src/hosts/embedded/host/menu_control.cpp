#include "host/menu_control.h"

namespace vantora::embedded {

std::shared_ptr<MenuControl> StandardMenuBar() {
  auto bar = std::make_shared<MenuControl>(host::MsoControlType::kPopup, nullptr);
  for (const char* caption :
       {"&File", "&Edit", "&View", "&Insert", "F&ormat", "&Tools", "&Data", "&Window", "&Help"}) {
    bar->controls.push_back(std::make_shared<MenuControl>(host::MsoControlType::kPopup, bar.get()));
    bar->controls.back()->caption = caption;
  }
  return bar;
}

std::vector<MenuEntry> EntriesOf(const MenuControl& control) {
  std::vector<MenuEntry> entries;
  for (const auto& inner : control.controls) {
    entries.push_back({.is_popup = inner->type == host::MsoControlType::kPopup,
                       .caption = inner->caption,
                       .tag = inner->tag,
                       .macro = inner->macro,
                       .face_id = inner->face_id,
                       .begins_group = inner->begins_group,
                       .visible = inner->visible,
                       .entries = EntriesOf(*inner)});
  }
  return entries;
}

}  // namespace vantora::embedded
