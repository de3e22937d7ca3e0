#pragma once

namespace velumar {

// What a run asks of the chart program's side. None of it throws: a chart program that is slow or
// gone never ends a run.
class ChartSide {
 public:
  virtual ~ChartSide() = default;
  // Brings the chart program up and closes its charts, so that the store can be filled. Its waits
  // let clicks run.
  virtual void CloseCharts() = 0;
  // Opens the chart of the run's symbol on the store.
  virtual void OpenChart() = 0;
  virtual void MaximizeHost() = 0;
  // False when the chart program isn't there.
  virtual bool BringHostToFront() = 0;
  // Makes every open chart read the store again, then shows the user where the replay is.
  virtual void RefreshCharts() = 0;
};

}  // namespace velumar
