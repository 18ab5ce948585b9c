// The texts of a workbook's cells, each stored once.
#pragma once

#include <cstdint>
#include <deque>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>

namespace vantora::embedded {

using TextId = std::uint32_t;

// The ids below shared_count() are the indices of the package's shared strings table, duplicates
// and rich texts included; later ids are texts that came since. Ids stay valid; texts never change.
class StringPool {
 public:
  // Appends an entry of the shared strings table, in its order. `plain` is false for a text with
  // runs or phonetics, which Intern never returns (a put of the same characters is a plain text).
  void AddShared(std::string text, bool plain);
  TextId shared_count() const { return shared_count_; }

  // The id of a plain text. May be called from several threads.
  TextId Intern(std::string_view text);
  const std::string& operator[](TextId id) const { return texts_[id]; }
  TextId size() const { return static_cast<TextId>(texts_.size()); }

 private:
  std::deque<std::string> texts_;
  std::unordered_map<std::string_view, TextId> plain_;
  TextId shared_count_ = 0;
  std::mutex mutex_;
};

}  // namespace vantora::embedded
