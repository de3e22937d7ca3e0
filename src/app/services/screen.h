#pragma once

#include "platform/services.h"

namespace velumar {

// The primary screen; a logical pixel is 15 twips.
class QtScreen : public Screen {
 public:
  float WidthTwips() const override;
  float HeightTwips() const override;
  bool Shows(float left, float top, float width, float height) const override;
};

class QtClipboard : public Clipboard {
 public:
  void SetText(std::string_view text) override;
};

}  // namespace velumar
