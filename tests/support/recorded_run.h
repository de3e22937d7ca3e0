#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "session/chart_side.h"
#include "session/run_inputs.h"
#include "session/run_view.h"

namespace velumar {

// What a trader enters and sees of a run, as plain fields instead of windows.
struct RecordedRun : RunInputs, RunView {
  enum class Shown { kNothing, kRunning, kPaused, kEnded };

  std::string Symbol() const override { return symbol; }
  bool Blind() const override { return blind; }
  std::string Interval() const override { return interval; }
  std::int32_t StartDay() const override { return start_day; }
  std::string StartingMoney() const override { return money; }
  std::string Delay() const override { return delay; }
  int ChartCount() const override { return charts; }
  std::string Quantity() const override { return quantity; }
  std::string Commission() const override { return commission; }
  std::string Vat() const override { return vat; }
  std::string Margin() const override { return margin; }
  std::string ProfitPerContract() const override { return profit; }

  void SetStatusLine(std::string_view text) override { line = text; }
  void SetStatusAdvice(std::string_view text) override { advice = text; }
  void ShowProgress(float fraction, std::string_view text) override {
    done = fraction;
    progress = text;
  }
  void ShowRunning() override {
    shown = Shown::kRunning;
    LockSetup();
  }
  void ShowPaused() override {
    shown = Shown::kPaused;
    UnlockSetup();
  }
  void ShowEnded() override { shown = Shown::kEnded; }
  void LockSetup() override { setup_locked = true; }
  void UnlockSetup() override { setup_locked = false; }
  void LockChartCount() override { chart_count_locked = true; }
  void UnlockChartCount() override { chart_count_locked = false; }
  void ShowStartDay(std::int32_t day) override { start_day = day; }
  void ShowDelay(std::string_view seconds) override { delay = seconds; }
  void OpenPanel() override {}
  void ShowStatus(const StatusTexts& texts) override {
    status = texts;
    refusal.clear();
  }
  void ShowRefusal(std::string_view why) override { refusal = why; }

  std::string symbol = "ABC";
  bool blind = false;
  std::string interval = "D";
  std::int32_t start_day = 20000101;
  std::string money = "2,000,000";
  std::string delay = "3";
  int charts = 1;
  std::string quantity = "1";
  std::string commission = "500";
  std::string vat = "7";
  std::string margin = "50,000";
  std::string profit = "1,000";

  std::string line;
  std::string advice;
  float done = -1;
  std::string progress;
  Shown shown = Shown::kNothing;
  bool setup_locked = false;
  bool chart_count_locked = false;
  StatusTexts status;
  std::string refusal;
};

// A chart side that does nothing but record the calls.
struct RecordedCharts : ChartSide {
  void CloseCharts() override { asked.emplace_back("close"); }
  void OpenChart() override { asked.emplace_back("open"); }
  void MaximizeHost() override {}
  bool BringHostToFront() override { return true; }
  void RefreshCharts() override { asked.emplace_back("refresh"); }
  void ShowPositions() override { asked.emplace_back("positions"); }
  void TakePicture(const std::string& file) override { pictures.push_back(file); }

  std::vector<std::string> asked;
  std::vector<std::string> pictures;
};

}  // namespace velumar
