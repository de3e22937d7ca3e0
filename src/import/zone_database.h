#pragma once

namespace velumar {

// Makes the time zones available. Call it before the first one is looked up; later calls do
// nothing.
void PrepareZones();

}  // namespace velumar
