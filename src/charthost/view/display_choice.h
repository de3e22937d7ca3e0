#pragma once

namespace velumar {

// To be called before the application object is made. Other programs work this one by its windows
// and keys, which takes a display that lets them.
void ChooseChartDisplay();

}  // namespace velumar
