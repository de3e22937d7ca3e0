#pragma once

#include "platform/services.h"

namespace velumar {

// The whole primary screen, at 15 twips a logical pixel.
class QtScreen : public Screen {
 public:
  float WidthTwips() const override;
  float HeightTwips() const override;
  bool Shows(float left, float top, float width, float height) const override;
};

}  // namespace velumar
