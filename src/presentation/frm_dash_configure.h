// Lets the user choose which dashboard columns each configuration shows, and name the
// configurations: a row of check boxes for each column, a column of them for each configuration.
#pragma once

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "core/form.h"
#include "core/host.h"
#include "core/model_layout.h"
#include "presentation/dashboard.h"

namespace vantora {

class clsMenuManagement;
class clsRefSheet;

// Made at run time: Init, Dashboard and CheckBoxListSize come first, then AddColumn for each
// column, then the dialog is shown modally. OK stores what was changed and rebuilds the dashboard's
// menu; Cancel and the close box unload it and store nothing. A host call that fails while OK
// stores ends the dialog: its error comes out of the modal showing, and a dashboard that was
// protected is so again.
//
// Controls: txtName1 to txtName9, the configurations' names; chk3_2, whether column 3 is shown in
// configuration 2; butAll2, which checks all columns of configuration 2, or none when all are
// checked; butPrevious and butNext, which leaf through more columns than fit; butOK, butCancel.
class frmDashConfigure final : public Form {
 public:
  frmDashConfigure();

  // What the dialog reads and stores through; all of it must outlive the dialog. `menus` may be
  // null. Loads the names.
  void Init(host::Application& application, clsDashboard& dashboard, clsRefSheet& reference_sheet,
            std::shared_ptr<clsMenuManagement> menus);
  // The worksheet, for its protection.
  void Dashboard(host::WorksheetPtr sheet) { sheet_ = std::move(sheet); }
  // The columns that can be added: 1 to `columns`.
  void CheckBoxListSize(int columns) { columns_ = columns; }
  // Adds a row for the column, or to the row that it has; nothing when it is none that can be
  // added. `titles` are those of its charts.
  void AddColumn(int column, const std::vector<std::string>& titles);

 private:
  struct Row {
    int column;
    std::string charts;
    // As the dashboard has them, by configuration number.
    std::vector<bool> stored;
    Label* label;
    std::array<CheckBox*, model::kDashboardConfigurations> boxes;
  };

  void OnActivate() override;
  void AddNames();
  Row& AddRow(int column);
  void AddButtons();
  void ShowPage(int page);
  int PageCount() const;
  void CheckAll(int configuration);

  void Store();
  void StoreColumns();
  void StoreNames();

  host::Application* application_ = nullptr;
  clsDashboard* dashboard_ = nullptr;
  clsRefSheet* reference_sheet_ = nullptr;
  std::shared_ptr<clsMenuManagement> menus_;
  host::WorksheetPtr sheet_;
  int columns_ = 0;

  std::array<TextBox*, model::kDashboardConfigurations> names_{};
  // As the Reference Sheet has them, by configuration number.
  std::vector<std::string> stored_names_;
  std::vector<Row> rows_;
  int page_ = 0;
  Button* previous_ = nullptr;
  Button* next_ = nullptr;
  Label* page_label_ = nullptr;
};

}  // namespace vantora
