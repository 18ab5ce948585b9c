// The menu bar of the embedded host: Office's command bars over the tree of controls. All controls
// are temporary here, since nothing of a menu is stored in a workbook.
#include <algorithm>

#include "host/menu_control.h"
#include "host/objects.h"

namespace vantora::embedded {
namespace {

using host::MsoControlType;
using ControlState = std::shared_ptr<MenuControl>;

constexpr int kInvalidCall = 5;
constexpr int kUnspecifiedFailure = -2147467259;  // E_FAIL

host::CommandBarControlPtr MakeControl(std::shared_ptr<ApplicationState> application,
                                       ControlState state);

// Fails as a member of an Office object does whose control has been deleted, or stood in a menu
// that has been.
void RequireExisting(const ApplicationState& application, const MenuControl& control,
                     const std::string& member) {
  const MenuControl* outermost = &control;
  while (outermost->parent) outermost = outermost->parent;
  if (outermost == application.menu_bar.get()) return;
  throw HostError(kUnspecifiedFailure,
                  "Method '" + member +
                      "' of object 'CommandBarControl' failed: the control has "
                      "been deleted.");
}

[[noreturn]] void RefuseMemberOfKind(const std::string& member, const std::string& kind) {
  throw HostError(
      HostError::kMemberNotSupported,
      "Object doesn't support this property or method: " + kind + " has no " + member + ".");
}

class EmbeddedControls : public host::CommandBarControls {
 public:
  EmbeddedControls(std::shared_ptr<ApplicationState> application, ControlState owner)
      : application_(std::move(application)), owner_(std::move(owner)) {}

  std::vector<host::CommandBarControlPtr> Items() override;
  host::CommandBarControlPtr Add(MsoControlType type, std::optional<int> before) override;

 private:
  std::shared_ptr<ApplicationState> application_;
  ControlState owner_;
};

class EmbeddedControl : public host::CommandBarControl {
 public:
  EmbeddedControl(std::shared_ptr<ApplicationState> application, ControlState state)
      : application_(std::move(application)), state_(std::move(state)) {}

  std::string Caption() override { return State("Caption").caption; }
  void SetCaption(std::string_view caption) override { State("Caption").caption = caption; }
  std::string Tag() override { return State("Tag").tag; }
  void SetTag(std::string_view tag) override { State("Tag").tag = tag; }
  void SetOnAction(std::string_view macro) override { State("OnAction").macro = macro; }
  void SetVisible(bool visible) override { State("Visible").visible = visible; }
  void SetBeginGroup(bool begins_group) override {
    State("BeginGroup").begins_group = begins_group;
  }
  void SetFaceId(int face_id) override;
  int Index() override;
  void Delete() override;
  host::CommandBarControlsPtr Controls() override;

 private:
  MenuControl& State(const std::string& member) {
    RequireExisting(*application_, *state_, member);
    return *state_;
  }
  // Where the control stands among its siblings.
  std::vector<ControlState>::iterator Place();

  std::shared_ptr<ApplicationState> application_;
  ControlState state_;
};

class EmbeddedMenuBar : public host::CommandBar {
 public:
  explicit EmbeddedMenuBar(std::shared_ptr<ApplicationState> application)
      : application_(std::move(application)) {}

  host::CommandBarControlsPtr Controls() override {
    return std::make_shared<EmbeddedControls>(application_, application_->menu_bar);
  }
  host::CommandBarControlPtr FindControl(std::string_view tag) override;

 private:
  std::shared_ptr<ApplicationState> application_;
};

std::vector<host::CommandBarControlPtr> EmbeddedControls::Items() {
  RequireExisting(*application_, *owner_, "Item");
  std::vector<host::CommandBarControlPtr> items;
  for (const ControlState& control : owner_->controls) {
    items.push_back(MakeControl(application_, control));
  }
  return items;
}

host::CommandBarControlPtr EmbeddedControls::Add(MsoControlType type, std::optional<int> before) {
  RequireExisting(*application_, *owner_, "Add");
  auto& controls = owner_->controls;
  const int count = static_cast<int>(controls.size());
  // One place behind the last control is the end.
  if (before && (*before < 1 || *before > count + 1)) {
    throw HostError(kInvalidCall, "Invalid procedure call or argument: there is no control " +
                                      std::to_string(*before) + " to add one before.");
  }
  auto added = std::make_shared<MenuControl>(type, owner_.get());
  controls.insert(controls.begin() + (before ? *before - 1 : count), added);
  return MakeControl(application_, std::move(added));
}

void EmbeddedControl::SetFaceId(int face_id) {
  MenuControl& state = State("FaceId");
  if (state.type != MsoControlType::kButton) RefuseMemberOfKind("FaceId", "a popup");
  state.face_id = face_id;
}

std::vector<ControlState>::iterator EmbeddedControl::Place() {
  auto& siblings = state_->parent->controls;
  return std::find(siblings.begin(), siblings.end(), state_);
}

int EmbeddedControl::Index() {
  const MenuControl& state = State("Index");
  return static_cast<int>(Place() - state.parent->controls.begin()) + 1;
}

void EmbeddedControl::Delete() {
  MenuControl& state = State("Delete");
  state.parent->controls.erase(Place());
  state.parent = nullptr;
}

host::CommandBarControlsPtr EmbeddedControl::Controls() {
  if (State("Controls").type != MsoControlType::kPopup) RefuseMemberOfKind("Controls", "a button");
  return std::make_shared<EmbeddedControls>(application_, state_);
}

host::CommandBarControlPtr EmbeddedMenuBar::FindControl(std::string_view tag) {
  for (const ControlState& control : application_->menu_bar->controls) {
    if (control->tag == tag) return MakeControl(application_, control);
  }
  return nullptr;
}

host::CommandBarControlPtr MakeControl(std::shared_ptr<ApplicationState> application,
                                       ControlState state) {
  return std::make_shared<EmbeddedControl>(std::move(application), std::move(state));
}

}  // namespace

host::CommandBarPtr MakeMenuBar(std::shared_ptr<ApplicationState> application) {
  return std::make_shared<EmbeddedMenuBar>(std::move(application));
}

}  // namespace vantora::embedded
