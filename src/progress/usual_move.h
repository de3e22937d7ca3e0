#pragma once

#include "progress/played.h"

namespace velumar {

// The root mean square of a session's changes from close to close; 0 if there are none. Results
// that are counted in it compare between securities of all prices and temperaments.
double UsualMoveOf(const PlayedSession& session);

}  // namespace velumar
