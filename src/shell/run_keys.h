#pragma once

#include <functional>
#include <map>
#include <utility>

#include "forms/desktop.h"
#include "host/trader_focus.h"
#include "platform/run_key.h"
#include "session/sim_session.h"

namespace velumar {

// The keys of a run: Space plays and pauses, Left and Right step, PageUp and PageDown step 30 bars,
// L and S order Long and Short, with Shift they offset. A key clicks its button, so what can't be
// clicked can't be typed either. B opens the score board, G asks for a day to move to, O shows the
// earlier trade of a session that plays one again, or hides it, N opens the plan of a trade, M
// makes a card of the bar.
class RunKeys {
 public:
  // What a key does that has no button, by its code.
  using Commands = std::map<int, std::function<void()>>;

  // `chart_opening` returns true while keys are typed into the chart program, which may return
  // them.
  RunKeys(const SimSession& session, Desktop& desktop, TraderFocus& trader,
          std::function<bool()> chart_opening, Commands commands)
      : session_(session),
        desktop_(desktop),
        trader_(trader),
        chart_opening_(std::move(chart_opening)),
        commands_(std::move(commands)) {}

  // True from the start of a run until "Close & Return".
  bool InRun() const;
  TraderFocus& Trader() const { return trader_; }
  // Handles a key typed in one of our windows. Returns false if it is not a key of a run. While the
  // trader works in another program, no key does anything.
  bool Press(const RunKeyPress& press);
  // The same for a key that the chart program received and passed on.
  bool PressFromChart(const RunKeyPress& press);

 private:
  PictureButton* ButtonOf(const RunKeyPress& press) const;

  const SimSession& session_;
  Desktop& desktop_;
  TraderFocus& trader_;
  std::function<bool()> chart_opening_;
  Commands commands_;
  bool stepping_ = false;  // a step by key is running
};

}  // namespace velumar
