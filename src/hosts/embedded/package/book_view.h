// The windows of a workbook as its main part holds them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vantora::embedded {

// One window: its place in points and its active tab.
struct BookView {
  double left = 0;
  double top = 0;
  // 0 where the part says nothing.
  double width = 0;
  double height = 0;
  bool minimized = false;
  // 0-based place among the tabs.
  int active_tab = 0;

  bool operator==(const BookView&) const = default;
};

struct BookViewToWrite {
  // The window's number in the part as it is; nullopt for a window that is new.
  std::optional<int> origin;
  BookView view;
};

// The windows in the part's order; one of no size where the part has none. Throws XmlError.
std::vector<BookView> ReadBookViews(std::string_view workbook);

// The part's text with these windows in their order; nullopt when it stays. What does not differ
// keeps its text. Throws XmlError.
std::optional<std::string> PatchBookViews(std::string_view workbook,
                                          const std::vector<BookViewToWrite>& windows);

}  // namespace vantora::embedded
