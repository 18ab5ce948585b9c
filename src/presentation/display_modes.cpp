#include "presentation/display_modes.h"

#include "core/common.h"
#include "core/model_layout.h"

namespace vantora {
namespace {

using host::WindowPtr;
using host::XlWindowState;

constexpr double kUpperWindowHeight = 295;
constexpr double kLeftWindowWidth = 393;
constexpr double kCornerTolerance = 10;
constexpr double kFullScreenAllowance = 20;

bool StandsInCorner(host::Window& window) {
  return window.Top() < kCornerTolerance && window.Left() < kCornerTolerance;
}

}  // namespace

void clsDisplayModes::MultiWindowUD() {
  if (initialized()) Toggle(Arrangement::kUpDown);
}

void clsDisplayModes::MultiWindowLR() {
  if (initialized()) Toggle(Arrangement::kLeftRight);
}

void clsDisplayModes::SetPresentationDisplay(const Value&, const Value&, const Value&) {}

void clsDisplayModes::Toggle(Arrangement arrangement) {
  application()->SetScreenUpdating(false);
  const host::WorkbookPtr workbook = ActiveWorkbookOf(*application());
  if (workbook->Windows().size() > 1) {
    ReturnToOneWindow(*workbook);
  } else if (arrangement == Arrangement::kUpDown) {
    ArrangeUpDown(*workbook);
  } else {
    ArrangeLeftRight(*workbook);
  }
  application()->SetScreenUpdating(true);
}

void clsDisplayModes::ReturnToOneWindow(host::Workbook& workbook) {
  WindowPtr kept;
  for (const WindowPtr& window : workbook.Windows()) {
    window->SetWindowState(XlWindowState::kNormal);
    if (!kept && !StandsInCorner(*window)) {
      kept = window;
    } else {
      window->Close();
    }
  }
  if (!kept) return;
  kept->SetWindowState(XlWindowState::kNormal);
  kept->SetTop(0);
  kept->SetLeft(0);
  kept->SetHeight(application()->UsableHeight() - FullScreenAllowance());
  kept->SetWidth(application()->UsableWidth());
}

void clsDisplayModes::ArrangeUpDown(host::Workbook& workbook) {
  const WindowPtr lower = ActiveWindowOf(*application());
  const WindowPtr upper = workbook.NewWindow();
  upper->SetWindowState(XlWindowState::kNormal);
  upper->SetTop(0);
  upper->SetLeft(0);
  upper->SetHeight(kUpperWindowHeight);
  upper->SetWidth(application()->UsableWidth());
  upper->Activate();
  SelectDashboard();
  lower->SetWindowState(XlWindowState::kNormal);
  lower->SetLeft(0);
  lower->SetTop(kUpperWindowHeight);
  // In an area less high than the upper window the host refuses what is left.
  lower->SetHeight(application()->UsableHeight() - kUpperWindowHeight - FullScreenAllowance());
  lower->SetWidth(application()->UsableWidth());
}

void clsDisplayModes::ArrangeLeftRight(host::Workbook& workbook) {
  const WindowPtr right = ActiveWindowOf(*application());
  const WindowPtr left = workbook.NewWindow();
  left->SetWindowState(XlWindowState::kNormal);
  left->SetTop(0);
  left->SetLeft(0);
  // Without the full-screen allowance, which the right window gets: the model's rule.
  left->SetHeight(application()->UsableHeight());
  left->SetWidth(kLeftWindowWidth);
  left->Activate();
  SelectDashboard();
  right->SetWindowState(XlWindowState::kNormal);
  right->SetLeft(kLeftWindowWidth);
  right->SetTop(0);
  right->SetHeight(application()->UsableHeight() - FullScreenAllowance());
  right->SetWidth(application()->UsableWidth() - kLeftWindowWidth);
}

double clsDisplayModes::FullScreenAllowance() {
  return application()->DisplayFullScreen() ? kFullScreenAllowance : 0;
}

void clsDisplayModes::SelectDashboard() {
  // The first dashboard in tab order, whichever sheet is active.
  for (const host::WorksheetPtr& sheet : ActiveWorkbookOf(*application())->Worksheets()) {
    if (!SheetHasFlag(sheet, model::kDashboardSheetFlag)) continue;
    sheet->Select();
    return;
  }
}

}  // namespace vantora
