// The menu bar and what stands on it.
#include "standin_parts.h"

namespace vantora::standin {
namespace {

Variant MadeControl(const ExcelPtr& excel, host::CommandBarControlPtr control);

class ControlsObject final : public StandInObject {
 public:
  ControlsObject(ExcelPtr excel, host::CommandBarControlsPtr controls)
      : StandInObject(std::move(excel), "CommandBarControls"), controls_(std::move(controls)) {}

 private:
  // Without Temporary the control would outlive Excel, which the component never asks for.
  Variant Answer(const Call& call) override {
    constexpr int kButton = 1, kEdit = 2, kDropdown = 3, kComboBox = 4, kPopup = 10;
    const int type = call.Enumerated(0, {kButton, kEdit, kDropdown, kComboBox, kPopup});
    if (call.Has(1) || call.Has(2) || (type != kButton && type != kPopup)) Refuse(call);
    if (!call.Has(4) || !call.Bool(4)) throw NotServed{"a lasting control"};
    std::optional<int> before;
    if (call.Has(3)) before = call.Int(3);
    return MadeControl(excel(), controls_->Add(static_cast<host::MsoControlType>(type), before));
  }
  std::vector<Variant> Items() override {
    std::vector<Variant> items;
    for (host::CommandBarControlPtr& control : controls_->Items()) {
      items.push_back(MadeControl(excel(), std::move(control)));
    }
    return items;
  }

  host::CommandBarControlsPtr controls_;
};

class ControlObject final : public StandInObject {
 public:
  ControlObject(ExcelPtr excel, std::string_view kind, host::CommandBarControlPtr control)
      : StandInObject(std::move(excel), kind), control_(std::move(control)) {}

 private:
  Variant Answer(const Call& call) override {
    std::string_view name = call.member().name;
    if (call.is_put()) return Put(call);
    if (name == "Caption") return Variant(std::string_view(control_->Caption()));
    if (name == "Tag") return Variant(std::string_view(control_->Tag()));
    if (name == "Index") return control_->Index();
    if (name == "Controls") return Made(new ControlsObject(excel(), control_->Controls()));
    if (name != "Delete") Refuse(call);
    call.RefuseFrom(0);
    control_->Delete();
    return {};
  }

  Variant Put(const Call& call) {
    std::string_view name = call.member().name;
    if (name == "Caption") control_->SetCaption(call.PutText());
    if (name == "Tag") control_->SetTag(call.PutText());
    if (name == "OnAction") control_->SetOnAction(call.PutText());
    if (name == "Visible") control_->SetVisible(call.PutBool());
    if (name == "BeginGroup") control_->SetBeginGroup(call.PutBool());
    if (name == "FaceId") control_->SetFaceId(call.PutInt());
    return {};
  }

  host::CommandBarControlPtr control_;
};

bool IsPopup(host::CommandBarControl& control) {
  try {
    return control.Controls() != nullptr;
  } catch (const HostError& error) {
    if (error.number() == HostError::kMemberNotSupported) return false;
    throw;
  }
}

Variant MadeControl(const ExcelPtr& excel, host::CommandBarControlPtr control) {
  if (!control) return Nothing();
  const char* kind = IsPopup(*control) ? "CommandBarPopup" : "CommandBarButton";
  return Made(new ControlObject(excel, kind, std::move(control)));
}

class CommandBarObject final : public StandInObject {
 public:
  CommandBarObject(ExcelPtr excel, host::CommandBarPtr bar)
      : StandInObject(std::move(excel), "CommandBar"), bar_(std::move(bar)) {}

 private:
  Variant Answer(const Call& call) override {
    if (call.member().name == "Controls") {
      return Made(new ControlsObject(excel(), bar_->Controls()));
    }
    if (call.Has(0) || call.Has(1)) Refuse(call);
    call.RefuseFrom(3);
    return MadeControl(excel(), bar_->FindControl(call.Text(2)));
  }

  host::CommandBarPtr bar_;
};

class CommandBarsObject final : public StandInObject {
 public:
  explicit CommandBarsObject(ExcelPtr excel) : StandInObject(std::move(excel), "CommandBars") {}

 private:
  Variant Answer(const Call&) override {
    return Made(new CommandBarObject(excel(), excel()->application->ActiveMenuBar()));
  }
};

}  // namespace

Variant MadeCommandBars(const ExcelPtr& excel) { return Made(new CommandBarsObject(excel)); }

}  // namespace vantora::standin
