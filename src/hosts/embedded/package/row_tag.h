// The start tag of a sheet's <row>: what it says of the row, and the changes to it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "cells/cell_store.h"
#include "cells/row_table.h"
#include "package/cell_patch.h"
#include "package/xml_scanner.h"

namespace vantora::embedded {

// Views into the part; data of absent attributes is null.
struct RowTag {
  std::string_view number, spans;
  std::string_view style, custom_format;
  std::string_view height, custom_height, hidden, outline_level, collapsed;

  // The row's format; nullopt when it has none of its own.
  std::optional<StyleId> Style() const;
  // What the attributes say; one that can't be read counts as absent.
  RowFormat Format() const;
};

// Reads the tag that the scanner stands at.
RowTag ReadRowTag(const XmlScanner& xml);

// Makes the tag, whose attributes end at `body_end`, say `format` and `style`. What it says already
// is left as it stands.
void PatchRowTag(const RowTag& tag, std::size_t body_end, const RowFormat& format,
                 const std::optional<StyleId>& style, ElementPatch& patch);

// Appends the attributes of a new row, each with a leading blank.
void AppendRowAttributes(std::string& out, const RowFormat& format,
                         const std::optional<StyleId>& style);

}  // namespace vantora::embedded
