#pragma once

namespace velumar {

// Names the folder of the time zones to the library, on systems that have none for it. Call it
// before looking up a zone.
void PrepareTimeZones();

}  // namespace velumar
