#include "package/book_view.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "package/cell_patch.h"
#include "package/file_limits.h"
#include "package/sheet_reader.h"
#include "package/xml_scanner.h"

namespace vantora::embedded {
namespace {

using Token = XmlScanner::Token;

// The part counts in twentieths of a point.
constexpr double kTwips = 20;

struct ViewElement {
  std::size_t begin = 0;
  std::size_t end = 0;
  std::size_t tag_end = 0;
  // Where attributes are inserted.
  std::size_t body_end = 0;
  std::vector<XmlAttribute> attributes;

  std::string_view Attribute(std::string_view name) const {
    auto found = std::ranges::find(attributes, name, &XmlAttribute::name);
    return found == attributes.end() ? std::string_view() : found->value;
  }
};

// The views of a main part, and where they are or would be.
struct Places {
  std::string prefix;
  std::vector<ViewElement> views;
  // Of <bookViews>; one place where there is none yet.
  std::size_t begin = 0;
  std::size_t end = 0;
  bool exists = false;
};

Places FindViews(std::string_view workbook) {
  Places places;
  XmlScanner xml(workbook);
  while (xml.Next() != Token::kStart) {
  }
  places.prefix = xml.name().substr(0, xml.name().size() - xml.local_name().size());
  while (xml.Next() != Token::kEnd) {
    if (xml.token() != Token::kStart) continue;
    if (xml.local_name() == "sheets" && !places.exists) places.begin = places.end = xml.begin();
    if (xml.local_name() != "bookViews") {
      xml.SkipElement();
      continue;
    }
    places.exists = true;
    places.begin = xml.begin();
    const bool is_empty = xml.is_empty();
    while (!is_empty && xml.Next() != Token::kEnd) {
      if (xml.token() != Token::kStart) continue;
      if (places.views.size() == kMostWindows) {
        throw XmlError("the workbook has more than " + std::to_string(kMostWindows) + " windows",
                       xml.begin(), FileError::Code::kTooLarge);
      }
      ViewElement view;
      view.begin = xml.begin();
      view.tag_end = xml.end();
      view.body_end = xml.end() - (xml.is_empty() ? 2 : 1);
      view.attributes = xml.attributes();
      xml.SkipElement();
      view.end = xml.end();
      places.views.push_back(std::move(view));
    }
    places.end = xml.end();
  }
  return places;
}

template <typename Number>
Number NumberOf(std::string_view text) {
  Number number{};
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

BookView ViewOf(const ViewElement& element) {
  auto points = [&](std::string_view name) {
    return NumberOf<double>(element.Attribute(name)) / kTwips;
  };
  BookView view;
  view.left = points("xWindow");
  view.top = points("yWindow");
  view.width = std::max(points("windowWidth"), 0.0);
  view.height = std::max(points("windowHeight"), 0.0);
  view.minimized = IsTrue(element.Attribute("minimized"));
  view.active_tab = std::max(NumberOf<int>(element.Attribute("activeTab")), 0);
  return view;
}

struct Attribute {
  std::string_view name;
  std::string value;
  bool operator==(const Attribute&) const = default;
};

// In the order in which Excel writes them.
std::vector<Attribute> AttributesOf(const BookView& view) {
  auto twips = [](double points) {
    return std::to_string(static_cast<long long>(std::llround(points * kTwips)));
  };
  return {{"minimized", view.minimized ? "1" : "0"},
          {"xWindow", twips(view.left)},
          {"yWindow", twips(view.top)},
          {"windowWidth", twips(view.width)},
          {"windowHeight", twips(view.height)},
          {"activeTab", std::to_string(view.active_tab)}};
}

std::string NewElement(const std::string& prefix, const BookView& view) {
  std::string text = "<" + prefix + "workbookView";
  const bool has_place = view.width > 0 || view.height > 0;
  for (const auto& [name, value] : AttributesOf(view)) {
    const bool is_place = name != "minimized" && name != "activeTab";
    const bool is_default = is_place ? !has_place : value == "0";
    if (!is_default) text += " " + std::string(name) + "=\"" + value + "\"";
  }
  return text + "/>";
}

std::string PatchedElement(std::string_view workbook, const ViewElement& element,
                           const BookView& view) {
  const std::vector<Attribute> was = AttributesOf(ViewOf(element));
  const std::vector<Attribute> now = AttributesOf(view);
  ElementPatch patch;
  patch.Reset(workbook);
  std::string added;
  for (std::size_t i = 0; i < now.size(); ++i) {
    if (was[i].value == now[i].value) continue;
    const std::string_view old = element.Attribute(now[i].name);
    if (old.data()) {
      patch.Replace(old, now[i].value);
    } else {
      added += " " + std::string(now[i].name) + "=\"" + now[i].value + "\"";
    }
  }
  if (!added.empty()) patch.Replace(element.body_end, element.body_end, added);
  std::string text;
  patch.AppendTo(text, element.begin, element.end);
  return text;
}

}  // namespace

std::vector<BookView> ReadBookViews(std::string_view workbook) {
  std::vector<BookView> views;
  for (const ViewElement& element : FindViews(workbook).views) views.push_back(ViewOf(element));
  if (views.empty()) views.emplace_back();
  return views;
}

std::optional<std::string> PatchBookViews(std::string_view workbook,
                                          const std::vector<BookViewToWrite>& windows) {
  const Places places = FindViews(workbook);
  const std::size_t count = places.views.size();
  std::string views;
  bool stays = count == windows.size();
  for (std::size_t i = 0; i < windows.size(); ++i) {
    const auto& [origin, view] = windows[i];
    if (!origin || *origin >= static_cast<int>(count)) {
      views += NewElement(places.prefix, view);
      stays = false;
      continue;
    }
    const ViewElement& element = places.views[*origin];
    const std::string text = PatchedElement(workbook, element, view);
    stays &= *origin == static_cast<int>(i) &&
             text == workbook.substr(element.begin, element.end - element.begin);
    views += text;
  }
  // Without a view there is one window on the first tab.
  const bool says_nothing = count == 0 && windows.size() == 1 && windows[0].view == BookView{};
  if (stays || says_nothing) return std::nullopt;
  std::size_t begin = places.begin;
  std::size_t end = places.end;
  if (count > 0) {
    begin = places.views.front().begin;
    end = places.views.back().end;
  } else {
    views = "<" + places.prefix + "bookViews>" + views + "</" + places.prefix + "bookViews>";
  }
  return std::string(workbook.substr(0, begin)) + views + std::string(workbook.substr(end));
}

}  // namespace vantora::embedded
