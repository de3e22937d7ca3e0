#include "charthost/view/display_choice.h"

namespace velumar {

void ChooseChartDisplay() {}

}  // namespace velumar
