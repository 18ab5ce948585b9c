#include "cli/menu.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/report.h"
#include "cli/run.h"
#include "cli/workbook_macros.h"
#include "core/common.h"
#include "core/convert.h"
#include "core/model_layout.h"
#include "ui/console/terminal_text.h"

namespace vantora::cli {
namespace {

using embedded::MenuEntry;
using Json = nlohmann::ordered_json;

constexpr int kDetailsColumn = 40;

// Builds the model's menu, and the dashboard's while the dashboard is the active sheet. Returns the
// menus that the model has added to the bar.
std::vector<MenuEntry> BuildMenus(const MenuOptions& options, ModelSession& session) {
  host::Application& application = session.application();
  if (options.dashboard) {
    const auto dashboard = FindFlaggedSheet(application, model::kDashboardSheetFlag);
    if (!dashboard) {
      throw UsageError("The model has no dashboard: no sheet has a \"D\" in its cell A1.");
    }
    dashboard->Activate();
  }
  session.menus().CreateVAMenuBar();
  if (SheetHasFlag(application.ActiveSheet(), model::kDashboardSheetFlag)) {
    session.menus().CreateDashboardMenuBar();
    session.menus().SetDashboardMenuPanes();
  }
  std::vector<MenuEntry> menus = session.workbook().MenuBar();
  std::erase_if(menus, [](const MenuEntry& menu) { return menu.tag.empty(); });
  return menus;
}

std::string Details(const MenuEntry& entry) {
  std::vector<std::string> details;
  if (!entry.macro.empty()) details.push_back(entry.macro);
  if (!entry.tag.empty()) details.push_back("tag " + entry.tag);
  if (entry.face_id != 0) details.push_back("face " + std::to_string(entry.face_id));
  if (!entry.visible) details.push_back("hidden");
  std::string text;
  for (const std::string& detail : details) text += (text.empty() ? "" : ", ") + detail;
  return ui::Printable(text);
}

void WriteEntries(const std::vector<MenuEntry>& entries, const std::string& indent,
                  std::ostream& out) {
  bool first = true;
  for (const MenuEntry& entry : entries) {
    // A menu shows no line above its first entry.
    if (entry.begins_group && !first) out << indent << "--------\n";
    first = false;
    const std::string caption = indent + ui::Printable(ui::WithoutAccelerators(entry.caption));
    const std::string details = Details(entry);
    out << caption;
    if (!details.empty()) {
      out << std::string(std::max(2, kDetailsColumn - ui::DisplayWidth(caption)), ' ') << details;
    }
    out << '\n';
    WriteEntries(entry.entries, indent + "  ", out);
  }
}

void WriteMenus(const std::vector<MenuEntry>& menus, std::ostream& out) {
  for (const MenuEntry& menu : menus) {
    out << ui::Printable(ui::WithoutAccelerators(menu.caption))
        << (menu.visible ? "\n" : " (hidden)\n");
    WriteEntries(menu.entries, "  ", out);
  }
}

Json EntriesJson(const std::vector<MenuEntry>& entries) {
  Json json = Json::array();
  for (const MenuEntry& entry : entries) {
    Json object = {{"caption", entry.caption},
                   {"tag", entry.tag},
                   {"macro", entry.macro},
                   {"face", entry.face_id},
                   {"begins_group", entry.begins_group},
                   {"visible", entry.visible}};
    if (entry.is_popup) object["entries"] = EntriesJson(entry.entries);
    json.push_back(std::move(object));
  }
  return json;
}

struct FoundEntry {
  const MenuEntry* entry;
  bool visible;  // it and all menus around it
};

// The rest of a path behind the caption that it starts with; nullopt when it starts with another.
std::optional<std::string_view> Behind(std::string_view path, std::string_view caption) {
  if (!EqualsIgnoreCase(path.substr(0, caption.size()), caption)) return std::nullopt;
  std::string_view rest = TrimBlanks(path.substr(std::min(caption.size(), path.size())));
  if (rest.empty()) return rest;
  if (rest.front() != '>') return std::nullopt;
  return TrimBlanks(rest.substr(1));
}

// Every entry that the path leads to. A caption may hold ">" itself.
void FindEntries(const std::vector<MenuEntry>& entries, std::string_view path, bool visible,
                 std::vector<FoundEntry>& found) {
  for (const MenuEntry& entry : entries) {
    auto rest = Behind(path, ui::WithoutAccelerators(entry.caption));
    // A sheet's name may hold "&", which its entry does not show.
    if (!rest) rest = Behind(path, entry.caption);
    if (!rest) continue;
    const bool entry_visible = visible && entry.visible;
    if (rest->empty()) {
      found.push_back({&entry, entry_visible});
    } else {
      FindEntries(entry.entries, *rest, entry_visible, found);
    }
  }
}

const MenuEntry& EntryAt(const std::vector<MenuEntry>& menus, const MenuOptions& options) {
  const std::string path(TrimBlanks(options.pick));
  std::vector<FoundEntry> found;
  FindEntries(menus, path, true, found);
  if (found.empty()) {
    throw UsageError("The menus have no entry \"" + path + "\"; 'vantora menu " +
                     options.run.model.string() + (options.dashboard ? " --dashboard" : "") +
                     "' shows all" +
                     (options.dashboard ? "." : ", and with --dashboard the dashboard's as well."));
  }
  std::erase_if(found, [](const FoundEntry& candidate) { return !candidate.visible; });
  if (found.empty()) throw UsageError("The entry \"" + path + "\" is hidden.");
  if (found.size() > 1) {
    throw UsageError("The menus have " + std::to_string(found.size()) + " entries \"" + path +
                     "\".");
  }
  const MenuEntry& entry = *found.front().entry;
  if (entry.is_popup) throw UsageError("\"" + path + "\" is a menu; pick one of its entries.");
  if (entry.macro.empty()) throw UsageError("The entry \"" + path + "\" runs no macro.");
  return entry;
}

}  // namespace

ExitCode ShowMenu(const MenuOptions& options, Environment& environment) {
  std::vector<MenuEntry> menus;
  const RunOutcome outcome = RunOperation(
      options.run, environment,
      [&](ModelSession& session, RunOutcome&) { menus = BuildMenus(options, session); });
  const bool done = outcome.exit_code == ExitCode::kDone;
  if (!done) Report(outcome, options.run, environment.out, environment.err);
  if (!options.run.json) {
    WriteMenus(menus, environment.out);
  } else if (done) {
    environment.out << Json{{"menus", EntriesJson(menus)}}.dump(2, ' ', false,
                                                                Json::error_handler_t::replace)
                    << '\n';
  }
  return outcome.exit_code;
}

RunOutcome PickFromMenu(const MenuOptions& options, Environment& environment) {
  return RunOperation(options.run, environment, [&](ModelSession& session, RunOutcome& outcome) {
    const std::vector<MenuEntry> menus = BuildMenus(options, session);
    outcome.operation = options.pick;
    RunWorkbookMacro(EntryAt(menus, options), session, outcome);
  });
}

}  // namespace vantora::cli
