#include "cells/string_pool.h"

namespace vantora::embedded {

void StringPool::AddShared(std::string text, bool plain) {
  std::lock_guard lock(mutex_);
  TextId id = static_cast<TextId>(texts_.size());
  texts_.push_back(std::move(text));
  if (plain) plain_.try_emplace(texts_.back(), id);
  shared_count_ = id + 1;
}

TextId StringPool::Intern(std::string_view text) {
  std::lock_guard lock(mutex_);
  if (auto found = plain_.find(text); found != plain_.end()) return found->second;
  TextId id = static_cast<TextId>(texts_.size());
  texts_.emplace_back(text);
  plain_.emplace(texts_.back(), id);
  return id;
}

}  // namespace vantora::embedded
