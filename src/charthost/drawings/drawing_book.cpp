#include "charthost/drawings/drawing_book.h"

#include <exception>

namespace velumar {

std::vector<Drawing> DrawingBook::Load(const SecurityKey& security) const {
  DrawingsBySecurity all = LoadDrawings(file_);
  return std::move(all[security]);
}

DrawingList& DrawingBook::Of(const SecurityKey& security) {
  const auto [place, is_new] = lists_.try_emplace(security);
  if (!is_new) return place->second;
  try {
    place->second = DrawingList(Load(security));
  } catch (const std::exception& error) {
    unread_.insert(security);
    problem_ = error.what();
  }
  return place->second;
}

void DrawingBook::Save(const SecurityKey& security) {
  DrawingList& list = Of(security);
  try {
    if (unread_.contains(security)) {
      std::vector<Drawing> drawings = Load(security);
      drawings.insert(drawings.end(), list.All().begin(), list.All().end());
      list = DrawingList(std::move(drawings));
      unread_.erase(security);
    }
    SaveDrawings(file_, security, list.All());
    problem_.clear();
  } catch (const std::exception& error) {
    problem_ = error.what();
  }
}

}  // namespace velumar
