#include "hosts/excel/excel_command_bars.h"

#include <optional>
#include <string>
#include <vector>

namespace vantora::excel {

namespace {

class ExcelCommandBarControl : public host::CommandBarControl {
 public:
  explicit ExcelCommandBarControl(Object object) : object_(std::move(object)) {}

  std::string Caption() override { return object_.GetText(Member::kCommandBarControlCaption); }
  void SetCaption(std::string_view caption) override {
    object_.Put(Member::kCommandBarControlCaption, caption);
  }
  std::string Tag() override { return object_.GetText(Member::kCommandBarControlTag); }
  void SetTag(std::string_view tag) override { object_.Put(Member::kCommandBarControlTag, tag); }
  void SetOnAction(std::string_view macro) override {
    object_.Put(Member::kCommandBarControlOnAction, macro);
  }
  void SetVisible(bool visible) override {
    object_.Put(Member::kCommandBarControlVisible, visible);
  }
  void SetBeginGroup(bool begins_group) override {
    object_.Put(Member::kCommandBarControlBeginGroup, begins_group);
  }
  void SetFaceId(int face_id) override {
    Require(Member::kCommandBarButtonFaceId);
    object_.Put(Member::kCommandBarButtonFaceId, face_id);
  }
  int Index() override { return object_.GetInt(Member::kCommandBarControlIndex); }
  void Delete() override { object_.Call(Member::kCommandBarControlDelete); }
  host::CommandBarControlsPtr Controls() override;

 private:
  // Members that not every control has: the identifier that such a member has for one kind belongs
  // to another member of another kind.
  void Require(Member member) const {
    if (!object_.Has(NameOf(member))) {
      throw HostError(HostError::kMemberNotSupported,
                      FullNameOf(member) + " is not a member of this menu control.");
    }
  }

  Object object_;
};

class ExcelCommandBarControls : public host::CommandBarControls {
 public:
  // `holder` is a bar or a popup, `controls` its collection.
  ExcelCommandBarControls(Object holder, Member controls)
      : holder_(std::move(holder)), controls_(controls) {}

  std::vector<host::CommandBarControlPtr> Items() override {
    std::vector<host::CommandBarControlPtr> items;
    for (Object& control : holder_.Items(controls_)) {
      items.push_back(std::make_shared<ExcelCommandBarControl>(std::move(control)));
    }
    return items;
  }
  host::CommandBarControlPtr Add(host::MsoControlType type, std::optional<int> before) override {
    const Object controls = holder_.Child(controls_);
    const int kind = static_cast<int>(type);
    return std::make_shared<ExcelCommandBarControl>(
        before ? controls.Child(Member::kCommandBarControlsAdd, {},
                                {{L"Type", kind}, {L"Before", *before}, {L"Temporary", true}})
               : controls.Child(Member::kCommandBarControlsAdd, {},
                                {{L"Type", kind}, {L"Temporary", true}}));
  }

 private:
  Object holder_;
  Member controls_;
};

host::CommandBarControlsPtr ExcelCommandBarControl::Controls() {
  Require(Member::kCommandBarPopupControls);
  return std::make_shared<ExcelCommandBarControls>(object_, Member::kCommandBarPopupControls);
}

}  // namespace

host::CommandBarControlsPtr ExcelCommandBar::Controls() {
  return std::make_shared<ExcelCommandBarControls>(object_, Member::kCommandBarControls);
}

host::CommandBarControlPtr ExcelCommandBar::FindControl(std::string_view tag) {
  std::optional<Object> control =
      object_.FindChild(Member::kCommandBarFindControl, {}, {{L"Tag", tag}});
  return control ? std::make_shared<ExcelCommandBarControl>(*std::move(control)) : nullptr;
}

}  // namespace vantora::excel
