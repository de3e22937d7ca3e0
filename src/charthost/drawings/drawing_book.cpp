#include "charthost/drawings/drawing_book.h"

#include <algorithm>
#include <exception>

namespace velumar {
namespace {

bool Holds(const std::vector<Drawing>& drawings, const Drawing& drawing) {
  return std::ranges::find(drawings, drawing) != drawings.end();
}

// Two programs have changed the drawings `before`: what either has added is there, what either has
// removed is not. A drawing that both have changed is there twice rather than lost.
std::vector<Drawing> Merged(const std::vector<Drawing>& before, std::vector<Drawing> theirs,
                            const std::vector<Drawing>& ours) {
  std::erase_if(theirs, [&](const Drawing& drawing) {
    return Holds(before, drawing) && !Holds(ours, drawing);
  });
  std::ranges::copy_if(ours, std::back_inserter(theirs),
                       [&](const Drawing& drawing) { return !Holds(before, drawing); });
  return theirs;
}

}  // namespace

DrawingBook::Kept& DrawingBook::KeptOf(const SecurityKey& security) {
  const auto [place, is_new] = kept_.try_emplace(security);
  if (!is_new) return place->second;
  try {
    DrawingsBySecurity all = LoadDrawings(file_);
    place->second = {DrawingList(all[security]), all[security]};
  } catch (const std::exception& error) {
    problem_ = error.what();
  }
  return place->second;
}

DrawingList& DrawingBook::Of(const SecurityKey& security) { return KeptOf(security).list; }

void DrawingBook::Save(const SecurityKey& security) {
  Kept& kept = KeptOf(security);
  try {
    std::vector<Drawing> saved = kept.list.All();
    ChangeDrawings(file_, security, [&](std::vector<Drawing> in_file) {
      if (in_file != kept.in_file) saved = Merged(kept.in_file, std::move(in_file), saved);
      return saved;
    });
    if (saved != kept.list.All()) kept.list = DrawingList(saved);
    kept.in_file = std::move(saved);
    problem_.clear();
  } catch (const std::exception& error) {
    problem_ = error.what();
  }
}

}  // namespace velumar
