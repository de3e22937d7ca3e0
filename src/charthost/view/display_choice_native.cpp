#include "charthost/view/display_choice.h"

namespace velumar {

void ChooseDisplay() {}

}  // namespace velumar
