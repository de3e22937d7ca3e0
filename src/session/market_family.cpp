#include "session/market_family.h"

namespace velumar {

bool IsStockMarket(const SimSession& session) {
  return session.DataDir.find("SET") != std::string::npos;
}

}  // namespace velumar
