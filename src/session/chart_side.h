#pragma once

#include <functional>

namespace velumar {

// What a run asks of the chart program's side. None of it throws: a chart program that is slow or
// gone never ends a run.
class ChartSide {
 public:
  virtual ~ChartSide() = default;
  // Brings the chart program up and closes its charts, so that the store can be filled. Its waits
  // let clicks run; it gives up as soon as one of them has begun another run.
  virtual void CloseCharts(const std::function<bool()>& superseded) = 0;
  // Opens the chart of the symbol on the store. Gives up as CloseCharts does.
  virtual void OpenChart(const std::function<bool()>& superseded) = 0;
  virtual void MaximizeHost() = 0;
  // False when the chart program isn't there.
  virtual bool BringHostToFront() = 0;
  // Makes every open chart read the store again, then tells the user where the replay stands.
  virtual void RefreshCharts() = 0;
};

}  // namespace velumar
