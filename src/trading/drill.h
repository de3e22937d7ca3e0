#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "ledger/drills.h"
#include "platform/platform.h"
#include "session/run_control.h"
#include "session/run_view.h"
#include "session/sim_session.h"
#include "trading/orders.h"

namespace velumar {

// The course of a drill: one blind chart after another, each until its last bar is shown or its
// time is up. Then all that is held is offset at the current bar, and the session is revealed. The
// next chart waits for the trader. Time passes in pauses too, or nobody could run out of it.
class Drill {
 public:
  enum class Stage : std::uint8_t {
    kNone,
    kStarting,  // a chart is being prepared
    kPlaying,
    kEnding,   // the chart's positions are being closed
    kBetween,  // another chart can be started
    kOver,
  };

  Drill(SimSession& session, RunControl& run, OrderDesk& orders, RunView& view, Platform& platform,
        LedgerConnection& ledger)
      : session_(session),
        run_(run),
        orders_(orders),
        view_(view),
        platform_(platform),
        ledger_(ledger) {}

  // A chart is about to be started: the first one of a drill that is planned like this, or the next
  // one of the current drill.
  void Begin(const LedgerDrill& plan);
  void BeginNext();
  // It could not be started. The drill ends; one without any chart is forgotten.
  void ChartFailed();
  // Call it after each bar and step, and about once a second. Notices that a chart has begun, and
  // ends the one whose bars are shown or whose time is up.
  void Check();
  // Ends the chart that is being played, and the drill. Does nothing while a chart is starting.
  void Stop();

  Stage CurrentStage() const { return stage_; }
  // True if the bars of something else are loaded by now.
  bool Left() const {
    return session_.LastArrayIndex() >= 0 &&
           (drill_.sessions.empty() || session_.SessionNumber != drill_.sessions.back());
  }
  // With the sessions that have begun.
  const LedgerDrill& Plan() const { return drill_; }
  // What the last chart was; nothing if it could not be revealed, or none has ended.
  const std::optional<RevealedSession>& LastChart() const { return last_; }
  // "Chart 2 of 5, bar 12 of 40, 1:35 left".
  std::string StatusText() const;

 private:
  void StartChart();
  void NoticeBegin();
  void EndChart();
  void Finish();
  int BarsShown() const { return session_.NewestShownBar - session_.FirstShownBar; }
  std::chrono::milliseconds TimeLeft() const;

  SimSession& session_;
  RunControl& run_;
  OrderDesk& orders_;
  RunView& view_;
  Platform& platform_;
  LedgerConnection& ledger_;
  Stage stage_ = Stage::kNone;
  LedgerDrill drill_;
  int session_before_ = 0;             // the loaded session when the chart was about to be started
  std::chrono::milliseconds began_{};  // the chart
  std::optional<RevealedSession> last_;
};

}  // namespace velumar
