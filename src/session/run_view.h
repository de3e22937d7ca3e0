#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velumar {

inline constexpr std::string_view kLoadingNotice = "Loading... Please wait.";

// The account and the current bar, as the trade panel and the big displays show them.
struct StatusTexts {
  struct Moment {
    std::string text;   // date and time
    bool fell = false;  // the close is below the one before
  };

  std::string positions;
  std::string account;  // what is used, and the portfolio
  std::string portfolio;
  bool loss = false;  // the portfolio is below 0
  std::string prices;
  std::optional<Moment> moment;  // without a current bar, the last one stays
};

// What a run shows the trader. A closed window that is needed for it is opened hidden.
class RunView {
 public:
  virtual ~RunView() = default;

  // The status line of the run, and the advice shown in its tooltip.
  virtual void SetStatusLine(std::string_view text) = 0;
  virtual void SetStatusAdvice(std::string_view text) = 0;
  // How much of the run is done, 0 to 1, and the same in words. Not shown if the navigator is
  // closed.
  virtual void ShowProgress(float done, std::string_view text) = 0;

  // While a run feeds: "Pause" and the four steps are available, "Play" is not; the setup is
  // locked.
  virtual void ShowRunning() = 0;
  // "Play" is available instead of "Pause", and the setup is unlocked.
  virtual void ShowPaused() = 0;
  // "Play" is available instead of "Pause".
  virtual void ShowEnded() = 0;
  // The day of the first bar that the run feeds, in place of the entered one.
  virtual void ShowStartDay(std::int32_t day) = 0;
  // Directory and security of the next run can't be chosen while the setup is locked.
  virtual void LockSetup() = 0;
  virtual void UnlockSetup() = 0;
  // The number of charts can't be changed while they are refreshed.
  virtual void LockChartCount() = 0;
  virtual void UnlockChartCount() = 0;
  virtual void ShowDelay(std::string_view seconds) = 0;

  // Opens the trade panel, hidden, if it is closed. That starts the account anew.
  virtual void OpenPanel() = 0;
  virtual void ShowStatus(const StatusTexts& texts) = 0;
  // Why an order was refused or had no effect, in red until the next ShowStatus.
  virtual void ShowRefusal(std::string_view why) = 0;
};

}  // namespace velumar
