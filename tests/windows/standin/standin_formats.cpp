// Fills, fonts and lines.
#include "standin_parts.h"

namespace vantora::standin {
namespace {

class InteriorObject final : public StandInObject {
 public:
  InteriorObject(ExcelPtr excel, host::InteriorPtr interior)
      : StandInObject(std::move(excel), "Interior"), interior_(std::move(interior)) {}

 private:
  Variant Answer(const Call& call) override {
    const bool is_colour = call.member().name == "ColorIndex";
    if (!call.is_put()) {
      if (!is_colour) Refuse(call);
      return interior_->ColorIndex();
    }
    if (is_colour) {
      interior_->SetColorIndex(call.PutInt());
    } else {
      interior_->SetPattern(static_cast<host::XlPattern>(call.PutEnumerated({1, -4142})));
    }
    return {};
  }

  host::InteriorPtr interior_;
};

class FontObject final : public StandInObject {
 public:
  FontObject(ExcelPtr excel, host::FontPtr font)
      : StandInObject(std::move(excel), "Font"), font_(std::move(font)) {}

 private:
  Variant Answer(const Call& call) override {
    std::string_view name = call.member().name;
    if (!call.is_put()) Refuse(call);
    if (name == "Size") font_->SetSize(call.PutDouble());
    if (name == "Bold") font_->SetBold(call.PutBool());
    if (name == "Italic") font_->SetItalic(call.PutBool());
    if (name == "ColorIndex") font_->SetColorIndex(call.PutInt());
    return {};
  }

  host::FontPtr font_;
};

class BorderObject final : public StandInObject {
 public:
  BorderObject(ExcelPtr excel, host::BordersPtr border)
      : StandInObject(std::move(excel), "Border"), border_(std::move(border)) {}

 private:
  Variant Answer(const Call& call) override {
    if (!call.is_put()) Refuse(call);
    if (call.member().name == "Weight") {
      border_->SetWeight(static_cast<host::XlBorderWeight>(call.PutEnumerated({1, 2, 4, -4138})));
    } else {
      border_->SetColorIndex(call.PutInt());
    }
    return {};
  }

  host::BordersPtr border_;
};

class BordersObject final : public StandInObject {
 public:
  BordersObject(ExcelPtr excel, host::RangePtr range)
      : StandInObject(std::move(excel), "Borders"), range_(std::move(range)) {}

 private:
  Variant Answer(const Call& call) override {
    auto index = static_cast<host::XlBordersIndex>(call.Enumerated(0, {5, 6, 7, 8, 9, 10, 11, 12}));
    return Made(new BorderObject(excel(), range_->Borders(index)));
  }

  host::RangePtr range_;
};

}  // namespace

Variant MadeInterior(const ExcelPtr& excel, host::InteriorPtr interior) {
  return Made(new InteriorObject(excel, std::move(interior)));
}

Variant MadeFont(const ExcelPtr& excel, host::FontPtr font) {
  return Made(new FontObject(excel, std::move(font)));
}

Variant MadeBorders(const ExcelPtr& excel, host::RangePtr range) {
  return Made(new BordersObject(excel, std::move(range)));
}

}  // namespace vantora::standin
