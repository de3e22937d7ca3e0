#pragma once

#include "forms/desktop.h"
#include "platform/platform.h"
#include "session/sim_session.h"

namespace velumar {

// The load steps of the three big windows. Each load goes back to the same place.
class BigDisplays {
 public:
  BigDisplays(const SimSession& session, Desktop& desktop, Platform& platform);

 private:
  void Shape(BigWindow& window);
  void LoadDateTime();
  void LoadScore();
  void LoadPrice();
  // A quarter of the window's width away from the right edge.
  float RightHandLeft(const BigWindow& window) const;

  const SimSession& session_;
  Desktop& desktop_;
  Platform& platform_;
};

}  // namespace velumar
