#include "host/format_objects.h"

#include <utility>

namespace vantora::embedded {
namespace {

constexpr double kMaxFontSize = 409;

// What the objects below have in common.
class FormatsOf {
 public:
  FormatsOf(BookHandle book, int sheet, std::vector<Area> areas)
      : book_(std::move(book)), sheet_(sheet), areas_(std::move(areas)) {}

 protected:
  void Apply(const FormatChange& change) {
    book_.application->copied.reset();
    book_->Format(sheet_, areas_, change);
  }

  BookHandle book_;
  int sheet_;
  std::vector<Area> areas_;
};

class EmbeddedInterior : public host::Interior, private FormatsOf {
 public:
  using FormatsOf::FormatsOf;

  int ColorIndex() override {
    const Area& first = areas_.front();
    return book_->FillColorIndex(sheet_, {first.first_row, first.first_column});
  }

  void SetColorIndex(int color_index) override {
    FormatChange change;
    change.fill_color_index =
        color_index == host::kColorIndexNone
            ? color_index
            : CheckedColor(color_index, false, "ColorIndex property of the Interior class");
    Apply(change);
  }

  void SetPattern(host::XlPattern pattern) override {
    FormatChange change;
    change.fill_pattern =
        pattern == host::XlPattern::kSolid ? FillPattern::kSolid : FillPattern::kNone;
    Apply(change);
  }
};

class EmbeddedFont : public host::Font, private FormatsOf {
 public:
  using FormatsOf::FormatsOf;

  void SetSize(double points) override {
    if (!(points >= 1 && points <= kMaxFontSize)) {
      Refuse("Unable to set the Size property of the Font class: a font has 1 to 409 points.");
    }
    FormatChange change;
    change.font_size = points;
    Apply(change);
  }

  void SetBold(bool bold) override {
    FormatChange change;
    change.bold = bold;
    Apply(change);
  }

  void SetItalic(bool italic) override {
    FormatChange change;
    change.italic = italic;
    Apply(change);
  }

  void SetColorIndex(int color_index) override {
    FormatChange change;
    change.font_color_index =
        CheckedColor(color_index, true, "ColorIndex property of the Font class");
    Apply(change);
  }
};

class EmbeddedInsideVerticals : public host::Borders, private FormatsOf {
 public:
  using FormatsOf::FormatsOf;

  void SetWeight(host::XlBorderWeight weight) override {
    Apply({.weight = LineWeightOf(weight), .color_index = {}});
  }

  void SetColorIndex(int color_index) override {
    Apply({.weight = {},
           .color_index =
               CheckedColor(color_index, true, "ColorIndex property of the Border class")});
  }

 private:
  void Apply(const LineChange& change) {
    book_.application->copied.reset();
    book_->FormatInsideVerticals(sheet_, areas_, change);
  }
};

}  // namespace

LineWeight LineWeightOf(host::XlBorderWeight weight) {
  switch (weight) {
    case host::XlBorderWeight::kHairline:
      return LineWeight::kHairline;
    case host::XlBorderWeight::kThin:
      return LineWeight::kThin;
  }
  Refuse("Unable to set the Weight property of the Border class.");
}

int CheckedColor(int color_index, bool automatic, const char* property) {
  if (color_index >= 1 && color_index <= host::kPaletteSize) return color_index;
  if (automatic && color_index == kAutomaticColor) return color_index;
  Refuse("Unable to set the " + std::string(property) + ": the palette has no colour " +
         std::to_string(color_index) + ".");
}

host::InteriorPtr MakeInterior(BookHandle book, int sheet, std::vector<Area> areas) {
  return std::make_shared<EmbeddedInterior>(std::move(book), sheet, std::move(areas));
}

host::FontPtr MakeFont(BookHandle book, int sheet, std::vector<Area> areas) {
  return std::make_shared<EmbeddedFont>(std::move(book), sheet, std::move(areas));
}

host::BordersPtr MakeInsideVerticals(BookHandle book, int sheet, std::vector<Area> areas) {
  return std::make_shared<EmbeddedInsideVerticals>(std::move(book), sheet, std::move(areas));
}

}  // namespace vantora::embedded
