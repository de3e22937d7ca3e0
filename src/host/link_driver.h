#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "host/chart_driver.h"
#include "platform/chart_link.h"

namespace velumar {

// Drives our own chart program over its direct link: without focus, keys, dialogs or fixed waits.
class LinkDriver : public ChartDriver {
 public:
  using ChartDriver::ChartDriver;

  // True if the link is the way to the chart: our chart program owns the chart window, even if it
  // is too busy to answer, or it has ended by itself since it was last used. Asks the chart
  // program, so call it before each use.
  bool Reaches();
  // True if no chart program is running and ours is the one to start.
  bool CanStart();

  void CloseCharts() override;
  void OpenChart() override;
  void Maximize() override {}
  bool BringToFront() override { return program_ != Program::kGone; }
  ChartTrouble Refresh() override;
  long RefreshMilliseconds() const override { return 0; }

  // Shows the orders, what is held and the entered quantity on the charts, if the chart program
  // answered last time. Waits only for a moment: an order must not.
  void ShowPositions();
  // Asks for a picture of the run's chart as it is shown now; there is none if the chart program
  // did not answer last time. Waits only for a moment.
  void TakePicture(const std::string& file);
  // True if the charts miss what they were last asked to show, because the chart program was busy
  // or had ended. Another refresh brings them up to date.
  bool Behind() const { return behind_; }
  // Our chart program takes these colours, now and whenever it is started, unless the trader has
  // chosen others in its menu.
  void SetTheme(bool dark);
  // Closes the chart program if this object has started it, even if it is only about to answer.
  void QuitStarted();
  // The trader has closed the chart program of that process, so it is not started again by itself.
  void ClosedByTrader(std::uint32_t process) {
    if (process == process_) process_ = 0;
  }

 private:
  enum class Program : std::uint8_t {
    kForeign,  // only keys reach it, or none is running
    kAnswers,
    kBusy,  // ours, but without an answer in time
    kGone,  // ours, but it has ended by itself
  };

  Program Look();
  // Returns false if the program doesn't answer within ten seconds. Clicks run in between.
  bool StartProgram();
  std::uint32_t ChartWindowProcess();  // 0 without one
  ChartPositions Positions();
  void SendTheme();
  LinkOutcome Ask(const ChartRequest& request, std::chrono::milliseconds patience);

  std::optional<bool> dark_;
  std::optional<bool> dark_there_;  // what the program has taken over
  Program program_ = Program::kForeign;
  std::uint32_t process_ = 0;  // that answered last
  int starting_ = 0;           // the program is being started; clicks run
  int restarts_ = 0;
  bool behind_ = false;
  std::uint32_t started_ = 0;    // the process that this object has started
  std::uint32_t opened_in_ = 0;  // the process in which the chart was opened
};

}  // namespace velumar
