#include "import/time_zones.h"

namespace velumar {

// The library finds the system's.
void PrepareTimeZones() {}

}  // namespace velumar
