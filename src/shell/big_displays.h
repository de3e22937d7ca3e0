#pragma once

#include "forms/desktop.h"
#include "platform/platform.h"
#include "session/sim_session.h"

namespace velumar {

// What happens when the three big displays open. Each opens at the same place.
class BigDisplays {
 public:
  BigDisplays(const SimSession& session, Desktop& desktop, Platform& platform);

 private:
  void Shape(BigWindow& window);
  void LoadDateTime();
  void LoadScore();
  void LoadPrice();
  // Leaves a quarter of the window's width to the right edge of the screen.
  float RightHandLeft(const BigWindow& window) const;

  const SimSession& session_;
  Desktop& desktop_;
  Platform& platform_;
};

}  // namespace velumar
