#include "package/sheet_charts.h"

#include <algorithm>
#include <charconv>

#include "core/convert.h"
#include "package/sheet_reader.h"
#include "package/xml_scanner.h"

namespace vantora::embedded {
namespace {

using Token = XmlScanner::Token;

constexpr std::string_view kUnnamedTitle = "Chart Title";

// Calls visit(local name) for each child of the element whose start tag the scanner stands at; it
// has to move past the child.
template <typename Visit>
void ForEachChild(XmlScanner& xml, Visit&& visit) {
  if (xml.is_empty()) return;
  while (xml.Next() != Token::kEnd) {
    if (xml.token() == Token::kStart) visit(std::string(xml.local_name()));
  }
}

std::int64_t ToNumber(std::string_view text) {
  text = TrimBlanks(text);
  std::int64_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

std::string_view LocalAttribute(const XmlScanner& xml, std::string_view local_name) {
  for (const XmlAttribute& attribute : xml.attributes()) {
    if (LocalName(attribute.name) == local_name) return attribute.value;
  }
  return {};
}

class DrawingReader {
 public:
  DrawingReader(std::string_view text, const std::vector<Relationship>& relationships)
      : xml_(text), relationships_(relationships) {}

  std::vector<SheetChart> Read() {
    while (xml_.Next() != Token::kDone) {
      if (xml_.token() != Token::kStart) continue;
      std::string_view name = xml_.local_name();
      if (name == "twoCellAnchor" || name == "oneCellAnchor" || name == "absoluteAnchor") {
        ReadAnchor();
      } else if (name == "Fallback") {
        xml_.SkipElement();
      }
    }
    return std::move(charts_);
  }

 private:
  void ReadAnchor() {
    ChartAnchor anchor;
    ForEachChild(xml_, [&](const std::string& name) { ReadAnchorChild(name, anchor); });
  }

  void ReadAnchorChild(const std::string& name, ChartAnchor& anchor) {
    if (name == "from") {
      anchor.from = ReadPlace();
    } else if (name == "to") {
      anchor.to = ReadPlace();
    } else if (name == "graphicFrame") {
      ReadFrame(anchor);
    } else if (name == "AlternateContent" || name == "Choice") {
      // Charts of the newer kind stand beside a picture for programs that don't know them.
      ForEachChild(xml_, [&](const std::string& inner) { ReadAnchorChild(inner, anchor); });
    } else {
      if (name == "pos") {
        anchor.left = ToNumber(LocalAttribute(xml_, "x"));
        anchor.top = ToNumber(LocalAttribute(xml_, "y"));
      } else if (name == "ext") {
        anchor.width = ToNumber(LocalAttribute(xml_, "cx"));
      }
      xml_.SkipElement();
    }
  }

  AnchorPlace ReadPlace() {
    AnchorPlace place;
    ForEachChild(xml_, [&](const std::string& name) {
      std::int64_t number = ToNumber(xml_.ElementText());
      if (name == "col") {
        place.column = static_cast<int>(std::clamp<std::int64_t>(number, 0, kMaxColumn - 1)) + 1;
      } else if (name == "row") {
        place.row = static_cast<int>(std::clamp<std::int64_t>(number, 0, kMaxRow - 1)) + 1;
      } else if (name == "colOff") {
        place.column_offset = number;
      } else if (name == "rowOff") {
        place.row_offset = number;
      }
    });
    return place;
  }

  void ReadFrame(const ChartAnchor& anchor) {
    ForEachChild(xml_, [&](const std::string& name) {
      if (name == "graphic" || name == "graphicData") {
        ReadFrame(anchor);
        return;
      }
      if (name == "chart") AddChart(anchor, DecodeXml(LocalAttribute(xml_, "id")));
      xml_.SkipElement();
    });
  }

  void AddChart(const ChartAnchor& anchor, const std::string& id) {
    for (const Relationship& relationship : relationships_) {
      if (relationship.id != id || relationship.external) continue;
      charts_.push_back({anchor, relationship.target});
    }
  }

  XmlScanner xml_;
  const std::vector<Relationship>& relationships_;
  std::vector<SheetChart> charts_;
};

// Reads the parts of both kinds of charts, whose elements are called alike where it matters.
class ChartReader {
 public:
  explicit ChartReader(std::string_view text) : xml_(text) {}

  std::optional<ChartText> Title() {
    while (xml_.Next() != Token::kDone && xml_.token() != Token::kStart) {
    }
    ForEachChild(xml_, [&](const std::string& name) {
      if (name != "chart") return Skip();
      ForEachChild(xml_, [&](const std::string& child) { ReadChartChild(child); });
    });
    if (title_) return title_;
    const bool named_alone = series_ == 1 && series_name_;
    if (is_automatic_)
      return named_alone ? *series_name_ : ChartText{"", std::string(kUnnamedTitle)};
    if (named_alone && !is_deleted_) return series_name_;
    return std::nullopt;
  }

 private:
  void Skip() { xml_.SkipElement(); }

  void ReadChartChild(const std::string& name) {
    if (name == "title") {
      is_automatic_ = true;
      ForEachChild(xml_, [&](const std::string& child) {
        if (child != "tx") return Skip();
        title_ = ReadText();
      });
    } else if (name == "plotArea") {
      ReadPlots();
    } else {
      if (name == "autoTitleDeleted") is_deleted_ = IsTrue(xml_.Attribute("val").value_or("1"));
      Skip();
    }
  }

  void ReadPlots() {
    ForEachChild(xml_, [&](const std::string& name) {
      if (name == "ser" || name == "series") {
        ++series_;
        ReadSeries();
      } else if (name == "plotAreaRegion" || name.ends_with("Chart")) {
        ReadPlots();
      } else {
        Skip();
      }
    });
  }

  void ReadSeries() {
    ForEachChild(xml_, [&](const std::string& name) {
      if (name != "tx") return Skip();
      series_name_ = ReadText();
      if (series_name_->formula.empty() && series_name_->text.empty()) series_name_.reset();
    });
  }

  // Of <tx>: a text of its own, or one that is linked to cells.
  ChartText ReadText() {
    ChartText text;
    ReadTextInto(text);
    return text;
  }

  void ReadTextInto(ChartText& text) {
    ForEachChild(xml_, [&](const std::string& name) {
      if (name == "rich") {
        text.text = ReadParagraphs();
      } else if (name == "f") {
        text.formula = xml_.ElementText();
      } else if (name == "v") {
        if (!text.text.empty()) text.text += ' ';
        text.text += xml_.ElementText();
      } else if (name == "strRef" || name == "txData" || name == "strCache" || name == "pt") {
        ReadTextInto(text);
      } else {
        Skip();
      }
    });
  }

  std::string ReadParagraphs() {
    std::string text;
    bool first = true;
    ForEachChild(xml_, [&](const std::string& name) {
      if (name != "p") return Skip();
      if (!std::exchange(first, false)) text += '\n';
      ForEachChild(xml_, [&](const std::string& run) {
        if (run == "br") text += '\n';
        if (run != "r" && run != "fld") return Skip();
        ForEachChild(xml_, [&](const std::string& child) {
          if (child != "t") return Skip();
          text += xml_.ElementText();
        });
      });
    });
    return text;
  }

  XmlScanner xml_;
  std::optional<ChartText> title_;
  // The chart asks for a title and leaves its text to the program.
  bool is_automatic_ = false;
  bool is_deleted_ = false;
  int series_ = 0;
  // Of the last series.
  std::optional<ChartText> series_name_;
};

}  // namespace

std::vector<SheetChart> ReadSheetCharts(const OpcPackage& package, std::string_view sheet_part) {
  for (const Relationship& relationship : package.RelationshipsOf(sheet_part)) {
    const std::string& drawing = relationship.target;
    if (!relationship.IsType("drawing") || relationship.external || !package.Has(drawing)) continue;
    try {
      const std::string text = package.Read(drawing);
      return DrawingReader(text, package.RelationshipsOf(drawing)).Read();
    } catch (const XmlError& error) {
      ThrowDamaged(drawing, error);
    }
  }
  return {};
}

std::optional<ChartText> ReadChartTitle(const OpcPackage& package, std::string_view chart_part) {
  try {
    const std::string text = package.Read(chart_part);
    return ChartReader(text).Title();
  } catch (const XmlError& error) {
    ThrowDamaged(chart_part, error);
  }
}

}  // namespace vantora::embedded
