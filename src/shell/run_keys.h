#pragma once

#include <functional>
#include <utility>

#include "forms/desktop.h"
#include "host/trader_focus.h"
#include "platform/run_key.h"
#include "session/sim_session.h"

namespace velumar {

// The keys of a run: Space plays and pauses, Left and Right step, PageUp and PageDown step 30 bars,
// L and S order Long and Short, with Shift they offset. A key clicks its button, so what can't be
// clicked can't be typed either. B opens the score board, G asks for a day to move to, O shows the
// earlier trade of a session that plays one again, or hides it, N opens the plan of a trade.
class RunKeys {
 public:
  // `chart_opening` returns true while keys are typed into the chart program, which may return
  // them.
  RunKeys(const SimSession& session, Desktop& desktop, TraderFocus& trader,
          std::function<bool()> chart_opening, std::function<void()> open_board,
          std::function<void()> go_to_date, std::function<void()> show_earlier,
          std::function<void()> open_plan)
      : session_(session),
        desktop_(desktop),
        trader_(trader),
        chart_opening_(std::move(chart_opening)),
        open_board_(std::move(open_board)),
        go_to_date_(std::move(go_to_date)),
        show_earlier_(std::move(show_earlier)),
        open_plan_(std::move(open_plan)) {}

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
  std::function<void()> open_board_;
  std::function<void()> go_to_date_;
  std::function<void()> show_earlier_;
  std::function<void()> open_plan_;
  bool stepping_ = false;  // a step by key is running
};

}  // namespace velumar
