#include "presentation/frm_dash_configure.h"

#include <algorithm>

#include "core/convert.h"
#include "presentation/menu_management.h"
#include "refsheet/ref_sheet.h"

namespace vantora {
namespace {

constexpr double kMargin = 12;
constexpr double kTitleWidth = 246;
constexpr double kBoxLeft = kMargin + kTitleWidth + 6;
constexpr double kBoxStep = 57;
constexpr double kBoxWidth = kBoxStep - 3;
constexpr double kHeadingTop = 36;
constexpr double kNameTop = 48;
constexpr double kAllTop = 69;
constexpr double kFirstRowTop = 96;
constexpr double kRowStep = 26;
constexpr int kRowsOnPage = 14;
constexpr double kButtonTop = kFirstRowTop + kRowsOnPage * kRowStep + 6;
constexpr double kButtonHeight = 21;
constexpr double kButtonWidth = 66;
constexpr double kWidth = kBoxLeft + model::kDashboardConfigurations * kBoxStep + kMargin;
constexpr double kHeight = kButtonTop + kButtonHeight + kMargin;

double BoxLeft(int configuration) { return kBoxLeft + (configuration - 1) * kBoxStep; }

// For a caption, where a single '&' marks an accelerator.
std::string EscapedAmpersands(const std::string& text) {
  std::string escaped;
  for (char c : text) escaped += c == '&' ? "&&" : std::string(1, c);
  return escaped;
}

// A worksheet that can be written to for a scope, protected again at its end when it was before.
class UnprotectedSheet {
 public:
  explicit UnprotectedSheet(host::WorksheetPtr sheet)
      : sheet_(std::move(sheet)), protect_(sheet_->ProtectContents()) {
    if (protect_) sheet_->Unprotect();
  }
  ~UnprotectedSheet() {
    if (!protect_) return;
    try {
      sheet_->Protect();
    } catch (const HostError&) {
      // The failure that ended the scope is what the user is told.
    }
  }
  UnprotectedSheet(const UnprotectedSheet&) = delete;
  UnprotectedSheet& operator=(const UnprotectedSheet&) = delete;

  // Ends the scope where a failure is still to be told.
  void Protect() {
    if (std::exchange(protect_, false)) sheet_->Protect();
  }

 private:
  host::WorksheetPtr sheet_;
  bool protect_;
};

}  // namespace

frmDashConfigure::frmDashConfigure()
    : Form("frmDashConfigure", "Dashboard Configuration", kWidth, kHeight) {
  Add<Label>("lblMessage",
             "Check the dashboard columns that each configuration shows.  The menu offers the "
             "configurations that have a name.",
             Bounds{.left = kMargin, .top = 9, .width = kWidth - 2 * kMargin, .height = 24});
}

void frmDashConfigure::Init(host::Application& application, clsDashboard& dashboard,
                            clsRefSheet& reference_sheet,
                            std::shared_ptr<clsMenuManagement> menus) {
  application_ = &application;
  dashboard_ = &dashboard;
  reference_sheet_ = &reference_sheet;
  menus_ = std::move(menus);
  stored_names_.assign(model::kDashboardConfigurations + 1, "");
  reference_sheet.ConfigsListGet(stored_names_);
  AddNames();
}

void frmDashConfigure::AddNames() {
  const bool can_be_stored = reference_sheet_->ConfigsListIsDefined();
  for (int number = 1; number <= model::kDashboardConfigurations; ++number) {
    const std::string suffix = std::to_string(number);
    const double left = BoxLeft(number);
    Add<Label>("lblName" + suffix, "Name " + suffix,
               Bounds{.left = left, .top = kHeadingTop, .width = kBoxWidth, .height = 12});
    TextBox& name =
        Add<TextBox>("txtName" + suffix,
                     Bounds{.left = left, .top = kNameTop, .width = kBoxWidth, .height = 18});
    name.SetText(stored_names_[static_cast<std::size_t>(number)]);
    name.SetEnabled(can_be_stored);
    names_[static_cast<std::size_t>(number - 1)] = &name;
  }
}

void frmDashConfigure::AddColumn(int column, const std::vector<std::string>& titles) {
  if (column < 1 || column > columns_) return;
  const auto known = std::find_if(rows_.begin(), rows_.end(),
                                  [&](const Row& row) { return row.column == column; });
  Row& row = known != rows_.end() ? *known : AddRow(column);
  for (const std::string& title : titles) {
    if (title.empty()) continue;
    row.charts += (row.charts.empty() ? ": " : ", ") + title;
  }
  row.label->SetCaption(EscapedAmpersands("Column " + std::to_string(column) + row.charts));
}

frmDashConfigure::Row& frmDashConfigure::AddRow(int column) {
  Row row{column, "", std::vector<bool>(model::kDashboardConfigurations + 1), nullptr, {}};
  dashboard_->RetrieveColumnConfig(column, row.stored);
  const std::string number = std::to_string(column);
  const double top = kFirstRowTop + static_cast<double>(rows_.size() % kRowsOnPage) * kRowStep;
  row.label = &Add<Label>(
      "lblColumn" + number, "",
      Bounds{.left = kMargin, .top = top + 2, .width = kTitleWidth, .height = kRowStep - 4});
  for (int configuration = 1; configuration <= model::kDashboardConfigurations; ++configuration) {
    const std::string caption = std::to_string(configuration);
    CheckBox& box = Add<CheckBox>(
        "chk" + number + "_" + caption, caption,
        Bounds{.left = BoxLeft(configuration), .top = top, .width = kBoxWidth, .height = 15});
    box.SetChecked(row.stored[static_cast<std::size_t>(configuration)]);
    row.boxes[static_cast<std::size_t>(configuration - 1)] = &box;
  }
  return rows_.emplace_back(std::move(row));
}

void frmDashConfigure::OnActivate() {
  if (!next_) AddButtons();
  ShowPage(page_);
}

// Behind the rows in tab order, so they come once all rows are there.
void frmDashConfigure::AddButtons() {
  for (int number = 1; number <= model::kDashboardConfigurations; ++number) {
    const std::string suffix = std::to_string(number);
    Button& all = Add<Button>(
        "butAll" + suffix, "All/none " + suffix,
        Bounds{.left = BoxLeft(number), .top = kAllTop, .width = kBoxWidth, .height = 18});
    all.on_click = [this, number] { CheckAll(number); };
  }
  auto add = [&](const char* name, const char* caption, double left) -> Button& {
    return Add<Button>(
        name, caption,
        Bounds{.left = left, .top = kButtonTop, .width = kButtonWidth, .height = kButtonHeight});
  };
  previous_ = &add("butPrevious", "&Previous", kMargin);
  previous_->on_click = [this] { ShowPage(page_ - 1); };
  next_ = &add("butNext", "&Next", kMargin + kButtonWidth + 6);
  next_->on_click = [this] { ShowPage(page_ + 1); };
  page_label_ = &Add<Label>("lblPage", "",
                            Bounds{.left = kMargin + 2 * (kButtonWidth + 6),
                                   .top = kButtonTop + 5,
                                   .width = 150,
                                   .height = 12});
  Button& ok = add("butOK", "OK", kWidth - kMargin - 2 * kButtonWidth - 6);
  ok.SetDefault();
  ok.on_click = [this] {
    Store();
    Hide();
  };
  Button& cancel = add("butCancel", "Cancel", kWidth - kMargin - kButtonWidth);
  cancel.SetCancel();
  // As the close box does: whoever shows the dialog can tell that the user left it.
  cancel.on_click = [this] { Unload(); };
}

int frmDashConfigure::PageCount() const {
  return std::max(1, (static_cast<int>(rows_.size()) + kRowsOnPage - 1) / kRowsOnPage);
}

void frmDashConfigure::ShowPage(int page) {
  page_ = page;
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    const bool visible = static_cast<int>(i) / kRowsOnPage == page;
    rows_[i].label->SetVisible(visible);
    for (CheckBox* box : rows_[i].boxes) box->SetVisible(visible);
  }
  const bool leafs = PageCount() > 1;
  for (Button* button : {previous_, next_}) button->SetVisible(leafs);
  previous_->SetEnabled(page > 0);
  next_->SetEnabled(page + 1 < PageCount());
  page_label_->SetVisible(leafs);
  page_label_->SetCaption("Page " + std::to_string(page + 1) + " of " +
                          std::to_string(PageCount()));
}

void frmDashConfigure::CheckAll(int configuration) {
  const auto index = static_cast<std::size_t>(configuration - 1);
  const bool all = std::all_of(rows_.begin(), rows_.end(),
                               [&](const Row& row) { return row.boxes[index]->checked(); });
  for (Row& row : rows_) row.boxes[index]->SetChecked(!all);
}

void frmDashConfigure::Store() {
  StoreColumns();
  StoreNames();
  if (menus_) menus_->CreateDashboardMenuBar();
}

void frmDashConfigure::StoreColumns() {
  std::vector<std::pair<int, std::vector<bool>>> changed;
  for (const Row& row : rows_) {
    std::vector<bool> flags(row.stored.size());
    for (std::size_t i = 0; i < row.boxes.size(); ++i) flags[i + 1] = row.boxes[i]->checked();
    if (!std::equal(flags.begin() + 1, flags.end(), row.stored.begin() + 1)) {
      changed.emplace_back(row.column, std::move(flags));
    }
  }
  if (changed.empty()) return;
  UnprotectedSheet unprotected(sheet_);
  for (const auto& [column, flags] : changed) dashboard_->SaveColumnConfig(column, flags);
  unprotected.Protect();
}

void frmDashConfigure::StoreNames() {
  std::vector<std::string> names = {""};
  for (const TextBox* box : names_) names.emplace_back(TrimBlanks(box->text()));
  if (std::equal(names.begin() + 1, names.end(), stored_names_.begin() + 1)) return;
  // Writing the list shows the Reference Sheet; the menu is made for the sheet that the user is on.
  const host::WorksheetPtr active = application_->ActiveSheet();
  reference_sheet_->ConfigsListPut(names);
  if (active) active->Activate();
}

}  // namespace vantora
