// Windows and their panes.
#include "standin_parts.h"

namespace vantora::standin {
namespace {

class PaneObject final : public StandInObject {
 public:
  PaneObject(ExcelPtr excel, host::PanePtr pane)
      : StandInObject(std::move(excel), "Pane"), pane_(std::move(pane)) {}

 private:
  Variant Answer(const Call& call) override {
    if (!call.is_put()) return pane_->ScrollColumn();
    pane_->SetScrollColumn(call.PutInt());
    return {};
  }

  host::PanePtr pane_;
};

class WindowObject final : public StandInObject {
 public:
  WindowObject(ExcelPtr excel, host::WindowPtr window)
      : StandInObject(std::move(excel), "Window"), window_(std::move(window)) {}

 private:
  Variant Answer(const Call& call) override {
    std::string_view name = call.member().name;
    if (call.is_put()) return Put(call);
    if (name == "Top") return window_->Top();
    if (name == "Left") return window_->Left();
    if (name == "Height") return window_->Height();
    if (name == "Width") return window_->Width();
    if (name == "ScrollRow") return window_->ScrollRow();
    if (name == "ScrollColumn") return window_->ScrollColumn();
    if (name == "Panes") return Panes();
    call.RefuseFrom(0);
    if (name == "Activate") {
      window_->Activate();
    } else if (name == "Close") {
      window_->Close();
    } else {
      Refuse(call);
    }
    return Done();
  }

  Variant Put(const Call& call) {
    std::string_view name = call.member().name;
    if (name == "Top") window_->SetTop(call.PutDouble());
    if (name == "Left") window_->SetLeft(call.PutDouble());
    if (name == "Height") window_->SetHeight(call.PutDouble());
    if (name == "Width") window_->SetWidth(call.PutDouble());
    if (name == "ScrollRow") window_->SetScrollRow(call.PutInt());
    if (name == "ScrollColumn") window_->SetScrollColumn(call.PutInt());
    if (name == "FreezePanes") window_->SetFreezePanes(call.PutBool());
    if (name == "WindowState") {
      window_->SetWindowState(
          static_cast<host::XlWindowState>(call.PutEnumerated({-4137, -4140, -4143})));
    }
    return {};
  }

  Variant Panes() {
    std::vector<Variant> panes;
    for (host::PanePtr& pane : window_->Panes()) {
      panes.push_back(Made(new PaneObject(excel(), std::move(pane))));
    }
    return MadeCollection(excel(), "Panes", std::move(panes));
  }

  host::WindowPtr window_;
};

}  // namespace

Variant MadeWindow(const ExcelPtr& excel, host::WindowPtr window) {
  return window ? Made(new WindowObject(excel, std::move(window))) : Nothing();
}

}  // namespace vantora::standin
