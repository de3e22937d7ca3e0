#include "charthost/view/dialog_plate.h"

namespace velumar {

// Windows have titles alone.
struct DialogPlate::Plate {};

DialogPlate::DialogPlate() = default;

DialogPlate::~DialogPlate() = default;

void DialogPlate::PutUp() {}

void DialogPlate::TakeDown() {}

}  // namespace velumar
