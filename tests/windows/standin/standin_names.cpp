// Defined names.
#include "standin_parts.h"

namespace vantora::standin {
namespace {

class NameObject final : public StandInObject {
 public:
  NameObject(ExcelPtr excel, host::NamePtr name)
      : StandInObject(std::move(excel), "Name"), name_(std::move(name)) {}

 private:
  Variant Answer(const Call& call) override {
    std::string_view member = call.member().name;
    if (call.is_put()) Refuse(call);
    if (member == "Name") return Variant(std::string_view(name_->OwnName()));
    if (member == "RefersToRange") return MadeRange(excel(), name_->RefersToRange());
    name_->Delete();
    return {};
  }

  host::NamePtr name_;
};

class NamesObject final : public StandInObject {
 public:
  NamesObject(ExcelPtr excel, host::NamesPtr names)
      : StandInObject(std::move(excel), "Names"), names_(std::move(names)) {}

 private:
  Variant Answer(const Call& call) override {
    constexpr std::size_t kRefersToR1C1 = 9;
    if (call.member().name == "Add") {
      for (std::size_t place = 1; place < kRefersToR1C1; ++place) {
        if (call.Has(place)) Refuse(call);
      }
      call.RefuseFrom(kRefersToR1C1 + 1);
      const std::string name = call.Text(0);
      if (!names_->Add(name, call.Text(kRefersToR1C1))) {
        throw HostError(HostError::kApplicationDefined, "That name is not valid.");
      }
      return MadeName(excel(), names_->Item(name));
    }
    call.RefuseFrom(1);
    return MadeName(excel(), names_->Item(call.Text(0)));
  }

  host::NamesPtr names_;
};

}  // namespace

Variant MadeName(const ExcelPtr& excel, host::NamePtr name) {
  return Made(new NameObject(excel, std::move(name)));
}

Variant MadeNames(const ExcelPtr& excel, host::NamesPtr names) {
  return Made(new NamesObject(excel, std::move(names)));
}

}  // namespace vantora::standin
