// What lies over the cells: comments, controls, charts.
#include "standin_parts.h"

namespace vantora::standin {
namespace {

class CommentObject final : public StandInObject {
 public:
  CommentObject(ExcelPtr excel, host::CommentPtr comment)
      : StandInObject(std::move(excel), "Comment"), comment_(std::move(comment)) {}

 private:
  Variant Answer(const Call& call) override {
    if (call.member().name == "Text") {
      call.RefuseFrom(1);
      std::string text = call.Text(0);
      comment_->Text(text);
      return Variant(std::string_view(text));
    }
    if (!call.is_put()) Refuse(call);
    comment_->SetVisible(call.PutBool());
    return {};
  }

  host::CommentPtr comment_;
};

class ControlFormatObject final : public StandInObject {
 public:
  ControlFormatObject(ExcelPtr excel, host::ShapePtr shape)
      : StandInObject(std::move(excel), "ControlFormat"), shape_(std::move(shape)) {}

 private:
  Variant Answer(const Call& call) override {
    if (call.is_put()) Refuse(call);
    return Variant(std::string_view(shape_->LinkedCell()));
  }

  host::ShapePtr shape_;
};

class ShapeObject final : public StandInObject {
 public:
  ShapeObject(ExcelPtr excel, host::ShapePtr shape)
      : StandInObject(std::move(excel), "Shape"), shape_(std::move(shape)) {}

 private:
  Variant Answer(const Call&) override { return Made(new ControlFormatObject(excel(), shape_)); }

  host::ShapePtr shape_;
};

class ShapesObject final : public StandInObject {
 public:
  ShapesObject(ExcelPtr excel, host::WorksheetPtr sheet)
      : StandInObject(std::move(excel), "Shapes"), sheet_(std::move(sheet)) {}

 private:
  Variant Answer(const Call& call) override {
    return Made(new ShapeObject(excel(), sheet_->Shapes(call.Text(0))));
  }

  host::WorksheetPtr sheet_;
};

class ChartTitleObject final : public StandInObject {
 public:
  ChartTitleObject(ExcelPtr excel, std::string caption)
      : StandInObject(std::move(excel), "ChartTitle"), caption_(std::move(caption)) {}

 private:
  Variant Answer(const Call& call) override {
    if (call.is_put()) Refuse(call);
    return Variant(std::string_view(caption_));
  }

  std::string caption_;
};

// A chart that is embedded in a sheet. It is its title that Excel refuses where there is none.
class EmbeddedChartObject final : public StandInObject {
 public:
  EmbeddedChartObject(ExcelPtr excel, host::ChartObjectPtr chart)
      : StandInObject(std::move(excel), "Chart"), chart_(std::move(chart)) {}

 private:
  Variant Answer(const Call& call) override {
    if (call.member().name != "ChartTitle") Refuse(call);
    return Made(new ChartTitleObject(excel(), chart_->TitleCaption()));
  }

  host::ChartObjectPtr chart_;
};

class ChartObjectObject final : public StandInObject {
 public:
  ChartObjectObject(ExcelPtr excel, host::ChartObjectPtr chart)
      : StandInObject(std::move(excel), "ChartObject"), chart_(std::move(chart)) {}

 private:
  Variant Answer(const Call& call) override {
    std::string_view name = call.member().name;
    if (call.is_put()) Refuse(call);
    if (name == "Left") return chart_->Left();
    if (name == "Top") return chart_->Top();
    if (name == "Width") return chart_->Width();
    return Made(new EmbeddedChartObject(excel(), chart_));
  }

  host::ChartObjectPtr chart_;
};

}  // namespace

Variant MadeComment(const ExcelPtr& excel, host::CommentPtr comment) {
  return Made(new CommentObject(excel, std::move(comment)));
}

Variant MadeShapes(const ExcelPtr& excel, host::WorksheetPtr sheet) {
  return Made(new ShapesObject(excel, std::move(sheet)));
}

Variant MadeChartObject(const ExcelPtr& excel, host::ChartObjectPtr chart) {
  return Made(new ChartObjectObject(excel, std::move(chart)));
}

}  // namespace vantora::standin
