#pragma once

#include "platform/services.h"

namespace velumar {

// Boxes in front of the windows, which themselves stay on top of everything.
class QtMessageBoxes : public MessageBoxes {
 public:
  void Show(std::string_view text, BoxIcon icon) override;
  void ShowTitled(std::string_view title, std::string_view text, BoxIcon icon) override;
  std::size_t Ask(std::string_view text, const std::vector<std::string>& answers) override;
};

}  // namespace velumar
