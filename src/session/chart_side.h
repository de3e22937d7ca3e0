#pragma once

#include <string>

namespace velumar {

// What a run needs of the chart program. Nothing here throws: a chart program that is slow or gone
// must not end a run.
class ChartSide {
 public:
  virtual ~ChartSide() = default;
  // Starts the chart program if necessary and closes its charts, so that the store can be filled.
  // Clicks run in its waits.
  virtual void CloseCharts() = 0;
  // Opens the chart of the run's symbol from the store.
  virtual void OpenChart() = 0;
  virtual void MaximizeHost() = 0;
  // False if the chart program isn't running.
  virtual bool BringHostToFront() = 0;
  // Makes every open chart read the store again, then shows the current bar and the account.
  virtual void RefreshCharts() = 0;
  // Shows the orders, what is held and the entered quantity on the charts, if the chart program
  // can.
  virtual void ShowPositions() = 0;
  // Saves a picture of the run's chart in the file, if the chart program can. Returns before it is
  // written.
  virtual void TakePicture(const std::string& file) = 0;
};

}  // namespace velumar
