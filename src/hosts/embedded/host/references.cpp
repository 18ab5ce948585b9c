#include "host/references.h"

#include <optional>
#include <string>
#include <vector>

#include "core/convert.h"

namespace vantora::embedded {
namespace {

// The parts between commas; those in a quoted sheet name divide nothing.
std::vector<std::string_view> SplitAtCommas(std::string_view text) {
  std::vector<std::string_view> parts;
  std::size_t begin = 0;
  bool is_quoted = false;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '\'') is_quoted = !is_quoted;
    if (text[at] != ',' || is_quoted) continue;
    parts.push_back(text.substr(begin, at - begin));
    begin = at + 1;
  }
  parts.push_back(text.substr(begin));
  return parts;
}

std::optional<Place> PlaceOfReference(const BookHandle& book, std::string_view text) {
  if (const DefinedName* name = book->model().FindName(text, book->active_sheet())) {
    return book->PlaceOf(*name);
  }
  // A formula that is this one reference says what it means, sheet names in quotes included.
  DefinedName reference;
  reference.refers_to = text;
  return book->PlaceOf(reference);
}

}  // namespace

host::RangePtr ReferencedRange(const BookHandle& book, std::string_view reference) {
  std::vector<Area> areas;
  std::optional<int> sheet;
  for (std::string_view part : SplitAtCommas(reference)) {
    const std::optional<Place> place = PlaceOfReference(book, TrimBlanks(part));
    if (!place || !book->sheet(place->sheet).is_worksheet) {
      Refuse("\"" + std::string(part) +
             "\" is no reference to cells of this workbook. Write it as 'Sheet name'!A1 or A1:B2.");
    }
    if (sheet.value_or(place->sheet) != place->sheet) {
      Refuse("\"" + std::string(reference) +
             "\" refers to cells of several sheets. Give cells of one sheet.");
    }
    sheet = place->sheet;
    areas.push_back(place->area);
  }
  return MakeRange(book, *sheet, std::move(areas));
}

}  // namespace vantora::embedded
