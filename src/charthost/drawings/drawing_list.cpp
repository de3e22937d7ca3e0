#include "charthost/drawings/drawing_list.h"

#include <algorithm>
#include <utility>

namespace velumar {
namespace {

bool HideTheSame(const std::vector<Drawing>& one, const std::vector<Drawing>& other,
                 std::int64_t known) {
  const auto hidden = [known](const Drawing& drawing) { return drawing.known > known; };
  auto next = other.begin();
  for (const Drawing& drawing : one) {
    if (!hidden(drawing)) continue;
    next = std::find_if(next, other.end(), hidden);
    if (next == other.end() || *next != drawing) return false;
    ++next;
  }
  return std::none_of(next, other.end(), hidden);
}

}  // namespace

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

bool DrawingList::CanUndo(std::int64_t known) const {
  return !undo_.empty() && HideTheSame(drawings_, undo_.back(), known);
}

bool DrawingList::CanRedo(std::int64_t known) const {
  return !redo_.empty() && HideTheSame(drawings_, redo_.back(), known);
}

void DrawingList::Undo(std::int64_t known) {
  if (!CanUndo(known)) return;
  redo_.push_back(std::exchange(drawings_, std::move(undo_.back())));
  undo_.pop_back();
}

void DrawingList::Redo(std::int64_t known) {
  if (!CanRedo(known)) return;
  undo_.push_back(std::exchange(drawings_, std::move(redo_.back())));
  redo_.pop_back();
}

}  // namespace velumar
