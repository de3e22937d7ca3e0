#include "charthost/drawings/drawing_list.h"

#include <utility>

namespace velumar {

std::vector<std::size_t> DrawingList::ShownAt(std::int64_t known) const {
  std::vector<std::size_t> shown;
  for (std::size_t i = 0; i < drawings_.size(); ++i) {
    if (drawings_[i].known <= known) shown.push_back(i);
  }
  return shown;
}

void DrawingList::Remember() {
  constexpr std::size_t kMostSteps = 100;
  if (undo_.size() == kMostSteps) undo_.erase(undo_.begin());
  undo_.push_back(drawings_);
  redo_.clear();
}

bool DrawingList::Add(Drawing drawing) {
  if (drawings_.size() >= kMost) return false;
  Remember();
  drawings_.push_back(std::move(drawing));
  return true;
}

void DrawingList::Change(std::size_t index, Drawing drawing) {
  if (drawings_.at(index) == drawing) return;
  Remember();
  drawings_[index] = std::move(drawing);
}

void DrawingList::Remove(std::size_t index) {
  Remember();
  drawings_.erase(drawings_.begin() + static_cast<std::ptrdiff_t>(index));
}

void DrawingList::Undo() {
  if (undo_.empty()) return;
  redo_.push_back(std::exchange(drawings_, std::move(undo_.back())));
  undo_.pop_back();
}

void DrawingList::Redo() {
  if (redo_.empty()) return;
  undo_.push_back(std::exchange(drawings_, std::move(redo_.back())));
  redo_.pop_back();
}

}  // namespace velumar
