#include "charthost/series_choice.h"

#include <stdexcept>

#include "base/text.h"
#include "charthost/date_text.h"

namespace velumar {
namespace {

// Higher is better; 0 is no choice at all.
int Rank(const SecurityInfo& security, const SeriesRequest& request, std::optional<int> shown) {
  if (!SameSymbol(security.symbol, request.symbol)) return 0;
  if (request.file_number) return security.file_number == *request.file_number ? 1 : 0;
  if (security.bars == 0) return 1;
  return security.file_number == shown ? 3 : 2;
}

}  // namespace

bool SameSymbol(const std::string& one, const std::string& other) {
  return NormalisedSymbol(one) == NormalisedSymbol(other);
}

std::optional<SecurityInfo> ChooseSeries(const std::vector<SecurityInfo>& securities,
                                         const SeriesRequest& request, std::optional<int> shown) {
  const SecurityInfo* best = nullptr;
  int best_rank = 0;
  for (const SecurityInfo& security : securities) {
    const int rank = Rank(security, request, shown);
    if (rank > best_rank) {
      best = &security;
      best_rank = rank;
    }
  }
  return best == nullptr ? std::nullopt : std::optional(*best);
}

SeriesRequest RequestOf(const TypedChoice& choice, const std::vector<SecurityInfo>& securities) {
  const std::string symbol = Trimmed(choice.symbol);
  if (symbol.empty())
    throw std::invalid_argument("Type a symbol or choose a security of the list.");
  bool known = false;
  for (const SecurityInfo& security : securities) {
    if (!SameSymbol(security.symbol, symbol)) continue;
    known = true;
    if (!choice.interval) return {choice.folder, security.symbol, std::nullopt};
    if (security.interval == *choice.interval) {
      return {choice.folder, security.symbol, security.file_number};
    }
  }
  throw std::invalid_argument(known ? "\"" + symbol + "\" has no series \"" +
                                          IntervalTitle(*choice.interval) + "\" in this folder."
                                    : "There is no security \"" + symbol + "\" in this folder.");
}

}  // namespace velumar
