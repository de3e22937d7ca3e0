#include "progress/usual_move.h"

#include <cmath>

namespace velumar {

double UsualMoveOf(const PlayedSession& session) {
  double squares = 0;
  for (std::size_t i = 1; i < session.closes.size(); ++i) {
    const double change =
        static_cast<double>(session.closes[i]) - static_cast<double>(session.closes[i - 1]);
    squares += change * change;
  }
  return session.closes.size() < 2
             ? 0
             : std::sqrt(squares / static_cast<double>(session.closes.size() - 1));
}

}  // namespace velumar
