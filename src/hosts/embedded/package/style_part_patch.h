// Writes what was added to the tables of a styles part into its text.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "cells/styles.h"
#include "package/style_tables.h"

namespace vantora::embedded {

// `text` with the added entries of the tables and, unless null, the palette; all else stays byte
// for byte. Throws XmlError.
std::string PatchStylesPart(std::string_view text, std::initializer_list<const StyleTable*> tables,
                            const Palette* palette);

}  // namespace vantora::embedded
