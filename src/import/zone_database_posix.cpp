#include "import/zone_database.h"

namespace velumar {

// The library reads the system's zones.
void PrepareZones() {}

}  // namespace velumar
