// Changes to the elements of the styles part that a format is made of.
#pragma once

#include <string>

#include "package/style_editor.h"
#include "package/xml_tree.h"

namespace vantora::embedded {

// Each changes a <fill>, <font>, <border> or <xf> in place. New children take the element's prefix.
void EditFill(pugi::xml_node fill, const FormatChange& change);
void EditFont(pugi::xml_node font, const FormatChange& change);
void EditBorder(pugi::xml_node border, const FormatChange& change);
void EditAlignment(pugi::xml_node xf, const FormatChange& change);

// Whether the change concerns that element.
bool ConcernsFill(const FormatChange& change);
bool ConcernsFont(const FormatChange& change);
bool ConcernsBorder(const FormatChange& change);
bool ConcernsAlignment(const FormatChange& change);

void SetAttribute(pugi::xml_node node, const char* name, const std::string& value);

}  // namespace vantora::embedded
