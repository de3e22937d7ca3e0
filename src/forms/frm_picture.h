#pragma once

#include "forms/form.h"
#include "forms/panels.h"

namespace velumar {

// The picture of an order in full size.
class FrmPicture : public Form {
 public:
  FrmPicture() : Form({"frmPicture", "Chart", 18000, 11250, true}) { SetKeepsKeys(true); }

  PictureFile imgChart{*this, {"imgChart", 0, 0, 18000, 11250, "", "", {}, "The chart as it was"}};
};

}  // namespace velumar
