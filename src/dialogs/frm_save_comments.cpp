#include "dialogs/frm_save_comments.h"

namespace vantora {
namespace {

constexpr std::string_view kMessage =
    "You may enter some (brief) text to remind you of the meaning of this particular point of "
    "saving data.  If you choose to do so, type your remarks in the box below; this will be "
    "placed as an Excel comment on Row 2 of each saved column in the model.  You may overtype "
    "the date and time if you don't want them in your comment.  Click a button when you're done.";

constexpr double kButtonTop = 132;
constexpr double kButtonHeight = 24;

}  // namespace

frmSaveComments::frmSaveComments(Clock& clock)
    : Form("frmSaveComments", "Vantora Save-a-Year Comment Text", 414, 165),
      clock_(clock),
      comments_([this]() -> TextBox& {
        Add<Label>("lblMessage", std::string(kMessage),
                   Bounds{.left = 12, .top = 9, .width = 390, .height = 60});
        return Add<TextBox>("txtComments",
                            Bounds{.left = 12, .top = 75, .width = 390, .height = 48},
                            /*multi_line=*/true);
      }()) {
  Button& with_text =
      Add<Button>("butText", "Continue with text I've entered",
                  Bounds{.left = 12, .top = kButtonTop, .width = 156, .height = kButtonHeight});
  with_text.SetDefault();
  with_text.on_click = [this] { Accept(comments_.text()); };
  Button& without_text =
      Add<Button>("butNoText", "Continue with no coment",
                  Bounds{.left = 180, .top = kButtonTop, .width = 138, .height = kButtonHeight});
  without_text.on_click = [this] { Accept(""); };
  Button& cancel =
      Add<Button>("butCancel", "Cancel",
                  Bounds{.left = 330, .top = kButtonTop, .width = 72, .height = kButtonHeight});
  cancel.SetCancel();
  cancel.on_click = [this] { Cancel(); };
}

void frmSaveComments::OnActivate() {
  comments_.SetText(" -- " + clock_.NowAsGeneralDate());
  continue_ = true;
}

void frmSaveComments::Accept(std::string_view comment) {
  comment_text_ = comment;
  Hide();
}

void frmSaveComments::Cancel() {
  continue_ = false;
  Hide();
}

}  // namespace vantora
