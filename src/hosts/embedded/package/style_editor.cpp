#include "package/style_editor.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "core/convert.h"
#include "package/fill_colors.h"
#include "package/format_edits.h"
#include "package/format_reader.h"
#include "package/style_part_patch.h"
#include "package/style_tables.h"
#include "package/xml_scanner.h"

namespace vantora::embedded {
namespace {

constexpr int kFirstOwnNumberFormat = 164;

constexpr std::string_view kNewStylesPart =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n<styleSheet xmlns=\""
    "http://schemas.openxmlformats.org/spreadsheetml/2006/main\">"
    "<fonts count=\"1\"><font><sz val=\"11\"/><name val=\"Calibri\"/><family val=\"2\"/></font>"
    "</fonts><fills count=\"2\"><fill><patternFill patternType=\"none\"/></fill><fill>"
    "<patternFill patternType=\"gray125\"/></fill></fills><borders count=\"1\"><border><left/>"
    "<right/><top/><bottom/><diagonal/></border></borders><cellStyleXfs count=\"1\"><xf "
    "numFmtId=\"0\" fontId=\"0\" fillId=\"0\" borderId=\"0\"/></cellStyleXfs><cellXfs count=\"1\">"
    "<xf numFmtId=\"0\" fontId=\"0\" fillId=\"0\" borderId=\"0\" xfId=\"0\"/></cellXfs>"
    "<cellStyles count=\"1\"><cellStyle name=\"Normal\" xfId=\"0\" builtinId=\"0\"/></cellStyles>"
    "</styleSheet>";

std::string TextOfPart(const OpcPackage& package, std::string_view part) {
  return part.empty() || !package.Has(part) ? NewStylesPart() : package.Read(part);
}

pugi::xml_document Parse(const std::string& text, std::string_view part) {
  pugi::xml_document document;
  auto result = document.load_buffer(text.data(), text.size());
  if (!result) {
    ThrowDamaged(part, XmlError(result.description(), static_cast<std::size_t>(result.offset)));
  }
  return document;
}

std::size_t Number(pugi::xml_node node, const char* attribute) {
  return node.attribute(attribute).as_uint();
}

// A tree of its own for an entry that may be added.
class Draft {
 public:
  explicit Draft(pugi::xml_node original) { document_.append_copy(original); }
  Draft(pugi::xml_node original, std::string_view prefix) : Draft(original) {
    while (pugi::xml_node extensions = Child(node(), "extLst")) node().remove_child(extensions);
    // Of namespaces that this workbook's part need not declare.
    for (pugi::xml_attribute attribute = node().first_attribute(); attribute;) {
      const pugi::xml_attribute next = attribute.next_attribute();
      const bool is_foreign =
          std::string_view(attribute.name()).find(':') != std::string_view::npos;
      if (is_foreign) node().remove_attribute(attribute);
      attribute = next;
    }
    SetPrefix(node(), prefix);
  }
  pugi::xml_node node() { return document_.first_child(); }

 private:
  pugi::xml_document document_;
};

}  // namespace

std::string NewStylesPart() { return std::string(kNewStylesPart); }

class StyleEditor::Impl {
 public:
  Impl(const OpcPackage& package, std::string_view part, std::string_view theme_part,
       Styles& styles)
      : part_(part),
        text_(TextOfPart(package, part)),
        document_(Parse(text_, part_)),
        root_(Child(document_, "styleSheet")),
        prefix_(std::string_view(root_.name())
                    .substr(0, std::string_view(root_.name()).size() - LocalNameOf(root_).size())),
        styles_(styles),
        colors_(package, theme_part),
        reader_(colors_, styles.palette, root_) {}

  StyleId Changed(StyleId style, const FormatChange& change) {
    Complete();
    Draft format(formats_[style]);
    pugi::xml_node xf = format.node();
    if (ConcernsFill(change)) Edit(xf, fills_, "fillId", "applyFill", EditFill, change);
    if (ConcernsFont(change)) Edit(xf, fonts_, "fontId", "applyFont", EditFont, change);
    if (ConcernsBorder(change)) Edit(xf, borders_, "borderId", "applyBorder", EditBorder, change);
    if (ConcernsAlignment(change)) {
      const std::string before = CanonicalText(Child(xf, "alignment"));
      EditAlignment(xf, change);
      if (CanonicalText(Child(xf, "alignment")) != before) {
        SetAttribute(xf, "applyAlignment", "1");
      }
    }
    return StyleOf(style, xf);
  }

  StyleId WithBorderOf(StyleId style, StyleId border_source) {
    const std::size_t border = Number(formats_[border_source], "borderId");
    if (border == Number(formats_[style], "borderId")) return style;
    Complete();
    Draft format(formats_[style]);
    SetAttribute(format.node(), "borderId", std::to_string(border));
    format.node().remove_attribute("applyBorder");
    if (pugi::xml_attribute apply = formats_[border_source].attribute("applyBorder")) {
      format.node().append_copy(apply);
    }
    return StyleOf(style, format.node());
  }

  StyleId Import(const Impl& source, StyleId style) {
    Complete();
    pugi::xml_node original = source.formats_[style];
    if (!original) return 0;
    Draft format(original, prefix_);
    pugi::xml_node xf = format.node();
    ImportParts(source, xf);
    SetAttribute(xf, "xfId", std::to_string(ImportNamedStyle(source, Number(original, "xfId"))));
    return StyleOf(kNoStyle, xf);
  }

  int ImportDifferential(const Impl& source, std::size_t id) {
    pugi::xml_document nothing;
    pugi::xml_node original =
        id < source.differentials_.size() ? source.differentials_[id] : nothing.append_child("dxf");
    Draft format(original, prefix_);
    return static_cast<int>(differentials_.FindOrAdd(format.node()));
  }

  void SetPalette(const Palette& palette) {
    if (palette == styles_.palette) return;
    styles_.palette = palette;
    palette_changed_ = true;
    reader_ = FormatReader(colors_, styles_.palette, root_);
    for (std::size_t i = 0; i < formats_.size(); ++i)
      styles_.formats[i] = reader_.Read(formats_[i]);
  }

  bool changed() const {
    return palette_changed_ || number_formats_.changed() || fonts_.changed() || fills_.changed() ||
           borders_.changed() || style_formats_.changed() || formats_.changed() ||
           named_styles_.changed() || differentials_.changed();
  }

  std::string Text() const {
    try {
      return PatchStylesPart(text_,
                             {&number_formats_, &fonts_, &fills_, &borders_, &style_formats_,
                              &formats_, &named_styles_, &differentials_},
                             palette_changed_ ? &styles_.palette : nullptr);
    } catch (const XmlError& error) {
      ThrowDamaged(part_, error);
    }
  }

 private:
  static constexpr StyleId kNoStyle = UINT32_MAX;
  // The BuiltInNumber of the default style.
  static constexpr std::string_view kNormal = "0,";

  // Tables that a sparse part lacks, before anything is added to them: the first entries have a
  // meaning.
  void Complete() {
    if (complete_) return;
    complete_ = true;
    CompleteTables({&fonts_, &fills_, &borders_, &formats_});
  }

  void CompleteTables(std::initializer_list<StyleTable*> tables) {
    const pugi::xml_document defaults = Parse(NewStylesPart(), part_);
    pugi::xml_node sheet = Child(defaults, "styleSheet");
    const auto complete = [&](StyleTable& table) {
      std::size_t index = 0;
      ForEachChild(Child(sheet, table.name()), table.entry_name(), [&](pugi::xml_node entry) {
        if (index++ < table.size()) return;
        Draft draft(entry, prefix_);
        table.Add(draft.node());
        if (&table == &fills_) reader_.AddFill(draft.node());
      });
    };
    for (StyleTable* table : tables) complete(*table);
  }

  // Changes the entry of `table` that the format uses.
  void Edit(pugi::xml_node xf, StyleTable& table, const char* id, const char* apply,
            void (*edit)(pugi::xml_node, const FormatChange&), const FormatChange& change) {
    Draft entry(table[Number(xf, id)]);
    const std::string before = CanonicalText(entry.node());
    edit(entry.node(), change);
    if (CanonicalText(entry.node()) == before) return;
    SetAttribute(xf, id, std::to_string(FindOrAdd(table, entry.node())));
    SetAttribute(xf, apply, "1");
  }

  std::size_t FindOrAdd(StyleTable& table, pugi::xml_node entry) {
    const std::size_t size = table.size();
    const std::size_t index = table.FindOrAdd(entry);
    if (&table == &fills_ && table.size() > size) reader_.AddFill(entry);
    return index;
  }

  // The style of a format that came from `style`; `style` when it says the same.
  StyleId StyleOf(StyleId style, pugi::xml_node xf) {
    if (style != kNoStyle && CanonicalText(xf) == CanonicalText(formats_[style])) return style;
    const std::size_t size = formats_.size();
    const std::size_t index = formats_.FindOrAdd(xf);
    if (formats_.size() > size) {
      styles_.formats.resize(std::max(styles_.formats.size(), formats_.size()));
      styles_.formats[index] = reader_.Read(xf);
    }
    return static_cast<StyleId>(index);
  }

  void ImportEntry(pugi::xml_node xf, const char* id, const StyleTable& from, StyleTable& to) {
    pugi::xml_node original = from[Number(xf, id)];
    if (!original) {
      SetAttribute(xf, id, "0");
      return;
    }
    Draft entry(original, prefix_);
    SetAttribute(xf, id, std::to_string(FindOrAdd(to, entry.node())));
  }

  std::size_t ImportNumberFormat(const Impl& source, std::size_t id) {
    std::string_view code;
    for (std::size_t i = 0; i < source.number_formats_.size(); ++i) {
      pugi::xml_node format = source.number_formats_[i];
      if (Number(format, "numFmtId") == id) code = format.attribute("formatCode").value();
    }
    if (code.empty()) return id < kFirstOwnNumberFormat ? id : 0;
    std::size_t free_id = kFirstOwnNumberFormat;
    for (std::size_t i = 0; i < number_formats_.size(); ++i) {
      pugi::xml_node format = number_formats_[i];
      if (format.attribute("formatCode").value() == code) return Number(format, "numFmtId");
      free_id = std::max(free_id, Number(format, "numFmtId") + 1);
    }
    pugi::xml_document document;
    pugi::xml_node format = document.append_child((prefix_ + "numFmt").c_str());
    SetAttribute(format, "numFmtId", std::to_string(free_id));
    SetAttribute(format, "formatCode", std::string(code));
    number_formats_.Add(format);
    reader_.AddNumberFormat(format);
    return free_id;
  }

  // The named style that a cell format of the source stands on: that of this workbook, which keeps
  // its own look, or the source's, which is added. A built-in style is told by its number, since
  // its name is in the language of the program that wrote it.
  std::size_t ImportNamedStyle(const Impl& source, std::size_t id) {
    const pugi::xml_node named = source.NamedStyleOf(id);
    if (!named || id >= source.style_formats_.size()) return 0;
    const std::string built_in = BuiltInNumber(named);
    const std::string_view name = named.attribute("name").value();
    for (std::size_t i = 0; i < named_styles_.size(); ++i) {
      const pugi::xml_node style = named_styles_[i];
      const bool is_same = built_in.empty()
                               ? EqualsIgnoreCase(style.attribute("name").value(), name)
                               : BuiltInNumber(style) == built_in;
      if (is_same) return Number(style, "xfId");
    }
    // A part that names no styles has the default one all the same.
    if (built_in == kNormal) return 0;
    CompleteTables({&style_formats_, &named_styles_});
    Draft format(source.style_formats_[id], prefix_);
    ImportParts(source, format.node());
    const std::size_t index = style_formats_.Add(format.node());
    Draft style(named, prefix_);
    SetAttribute(style.node(), "xfId", std::to_string(index));
    named_styles_.Add(style.node());
    return index;
  }

  pugi::xml_node NamedStyleOf(std::size_t id) const {
    for (std::size_t i = 0; i < named_styles_.size(); ++i) {
      if (Number(named_styles_[i], "xfId") == id) return named_styles_[i];
    }
    return {};
  }

  // With the level of an outline style; "" for a style that a user made.
  static std::string BuiltInNumber(pugi::xml_node style) {
    const pugi::xml_attribute number = style.attribute("builtinId");
    if (!number) return "";
    return std::string(number.value()) + "," + style.attribute("iLevel").value();
  }

  // What a format refers to, as entries of this workbook.
  void ImportParts(const Impl& source, pugi::xml_node xf) {
    ImportEntry(xf, "fontId", source.fonts_, fonts_);
    ImportEntry(xf, "fillId", source.fills_, fills_);
    ImportEntry(xf, "borderId", source.borders_, borders_);
    SetAttribute(xf, "numFmtId",
                 std::to_string(ImportNumberFormat(source, Number(xf, "numFmtId"))));
  }

  std::string part_;
  // The part as it was read.
  std::string text_;
  pugi::xml_document document_;
  pugi::xml_node root_;
  std::string prefix_;
  Styles& styles_;
  FillColors colors_;
  FormatReader reader_;
  StyleTable number_formats_{root_, prefix_, "numFmts", "numFmt"};
  StyleTable fonts_{root_, prefix_, "fonts", "font"};
  StyleTable fills_{root_, prefix_, "fills", "fill"};
  StyleTable borders_{root_, prefix_, "borders", "border"};
  StyleTable style_formats_{root_, prefix_, "cellStyleXfs", "xf"};
  StyleTable formats_{root_, prefix_, "cellXfs", "xf"};
  StyleTable named_styles_{root_, prefix_, "cellStyles", "cellStyle"};
  StyleTable differentials_{root_, prefix_, "dxfs", "dxf"};
  bool complete_ = false;
  bool palette_changed_ = false;
};

StyleEditor::StyleEditor(const OpcPackage& package, std::string_view part,
                         std::string_view theme_part, Styles& styles)
    : impl_(std::make_unique<Impl>(package, part, theme_part, styles)) {}
StyleEditor::~StyleEditor() = default;

StyleId StyleEditor::Changed(StyleId style, const FormatChange& change) {
  return impl_->Changed(style, change);
}

StyleId StyleEditor::WithBorderOf(StyleId style, StyleId border_source) {
  return impl_->WithBorderOf(style, border_source);
}

StyleId StyleEditor::Import(const StyleEditor& source, StyleId style) {
  return impl_->Import(*source.impl_, style);
}

int StyleEditor::ImportDifferential(const StyleEditor& source, int id) {
  return impl_->ImportDifferential(*source.impl_, static_cast<std::size_t>(id));
}

void StyleEditor::SetPalette(const Palette& palette) { impl_->SetPalette(palette); }

bool StyleEditor::changed() const { return impl_->changed(); }

std::string StyleEditor::Text() const { return impl_->Text(); }

}  // namespace vantora::embedded
