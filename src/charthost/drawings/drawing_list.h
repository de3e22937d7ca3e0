#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "charthost/drawings/drawing.h"

namespace velumar {

// The drawings of one security, and what undo and redo bring back. The later a drawing in the list,
// the further in front it is.
class DrawingList {
 public:
  static constexpr std::size_t kMost = 1000;

  explicit DrawingList(std::vector<Drawing> drawings = {}) : drawings_(std::move(drawings)) {}

  const std::vector<Drawing>& All() const { return drawings_; }
  // The drawings that were known then: see TimeAxis::Known. A run that goes back hides the others.
  std::vector<std::size_t> ShownAt(std::int64_t known) const;

  // Each of these is one step to undo. Returns false if the list is full.
  bool Add(Drawing drawing);
  void Change(std::size_t index, Drawing drawing);
  void Remove(std::size_t index);

  // Nothing happens to a drawing that is hidden: a step that would change one waits until `known`
  // has reached it.
  bool CanUndo(std::int64_t known) const;
  bool CanRedo(std::int64_t known) const;
  void Undo(std::int64_t known);
  void Redo(std::int64_t known);

 private:
  void Remember();

  std::vector<Drawing> drawings_;
  std::vector<std::vector<Drawing>> undo_;
  std::vector<std::vector<Drawing>> redo_;
};

}  // namespace velumar
