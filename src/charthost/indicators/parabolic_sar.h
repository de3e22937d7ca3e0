#pragma once

#include <optional>

#include "charthost/indicators/indicator.h"

namespace velumar {

// The price at which a position that is always in the market turns round ("stop and reverse"): J.
// Welles Wilder, "New Concepts in Technical Trading Systems", 1978, section II.
//   next SAR = SAR + factor x (extreme - SAR)
// The extreme is the highest high since the turn to long, or the lowest low since the turn to
// short. The factor begins at `step` and grows by it with each new extreme, up to `most`. The SAR
// never enters the range of the last two bars. A bar that reaches it turns the position, and the
// SAR becomes the extreme. The second bar opens the first position: short if its low falls by more
// than its high rises, otherwise long. Step 0.001 to 1, usually 0.02; most 0.001 to 1, usually 0.2.
class ParabolicSar {
 public:
  ParabolicSar(double step, double most) : step_(step), most_(most) {}
  IndicatorLines operator()(const Bar& bar);

 private:
  void Open(const Bar& bar);
  void Turn(const Bar& bar);

  double step_;
  double most_;
  std::optional<Bar> previous_;
  bool open_ = false;
  bool is_long_ = true;
  double sar_ = 0;
  double extreme_ = 0;
  double factor_ = 0;
};

}  // namespace velumar
