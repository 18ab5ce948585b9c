#include "core/progress_dialog.h"

#include <cmath>

#include "core/common.h"
#include "core/convert.h"

namespace vantora {
namespace {

// By this caption the dialog finds its own window among the desktop's.
constexpr std::string_view kLoadingCaption = "ProExcelProgressBar";
// What the bar shows until the operation sets its first value.
constexpr double kStartValue = 54;
// Smaller steps are not drawn, so that fast loops do not spend their time drawing.
constexpr double kDrawnStep = 0.005;
// One screen pixel in points.
constexpr double kPixel = 0.75;
constexpr std::uint32_t kSystemMenuStyle = 0x80000;

constexpr Bounds kMessageBounds{.left = 12, .top = 9, .width = 270, .height = 24};
constexpr Bounds kBarBounds{.left = 12, .top = 39, .width = 270, .height = 18};

}  // namespace

frmProgressBar::frmProgressBar(UserInterface& user_interface)
    : Form("frmProgressBar", "", 294, 93),
      user_interface_(user_interface),
      message_(Add<Label>("lblMessage", "", kMessageBounds)),
      back_(Add<Label>("lblBack", "", kBarBounds)),
      bar_(Add<Label>("lblBar", "", kBarBounds)),
      front_(Add<Label>("lblFront", "", kBarBounds)),
      cancel_(Add<Button>("butCancel", "Cancel",
                          Bounds{.left = 117, .top = 66, .width = 60, .height = 21})) {
  cancel_.SetCancel();
  cancel_.on_click = [this] { PressCancel(); };
  Load();
}

void frmProgressBar::Load() {
  SetCaption(kLoadingCaption);
  if (WindowSystem* windows = user_interface_.windows()) {
    Attach(&user_interface_);
    user_interface_.Refresh(*this);  // makes the window that is looked for
    window_ = windows->FindByCaption(caption());
  }
  min_ = 0;
  max_ = 100;
  message_.SetCaption("");
  SetCaption("");
  RemoveSystemMenu();
  SetProgress(kStartValue);
}

void frmProgressBar::RemoveSystemMenu() {
  WindowSystem* windows = user_interface_.windows();
  if (!windows) return;
  std::uint32_t style = windows->Style(window_);
  if (style != 0) windows->SetStyle(window_, style & ~kSystemMenuStyle);
}

void frmProgressBar::SetTitle(std::string_view title) {
  SetCaption(title);
  RemoveSystemMenu();  // a new caption brings it back
}

void frmProgressBar::SetText(std::string_view text) {
  if (text == Text()) return;
  message_.SetCaption(text);
  Redraw();
  if (visible()) BringToFront(user_interface_, window_);
}

void frmProgressBar::ShowForm() {
  RemoveSystemMenu();
  user_interface_.ShowModeless(*this);
}

void frmProgressBar::SetProgress(double progress) {
  progress_ = progress;
  double fraction = max_ == min_ ? 0 : std::fabs((progress - min_) / (max_ - min_));
  if (!(std::fabs(fraction - shown_fraction_) > kDrawnStep)) return;
  shown_fraction_ = fraction;
  DrawBar(fraction);
  if (visible()) {
    user_interface_.ShowModeless(*this);
    BringToFront(user_interface_, window_);
  }
  user_interface_.DoEvents();
}

void frmProgressBar::DrawBar(double fraction) {
  Bounds bounds = bar_.bounds();
  // Up to the next whole pixel.
  bounds.width = std::floor(back_.bounds().width * fraction / kPixel + 1) * kPixel;
  bar_.SetBounds(bounds);
  std::string percent = NumberToPercent(fraction);
  back_.SetCaption(percent);
  front_.SetCaption(percent);
}

void frmProgressBar::PressCancel() {
  message_.SetCaption("Cancelling, please wait...");
  cancelled_ = true;
  cancel_.SetEnabled(false);
  Redraw();
}

void frmProgressBar::Redraw() {
  if (shown_by()) shown_by()->Refresh(*this);
}

}  // namespace vantora
