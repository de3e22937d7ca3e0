#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "forms/desktop.h"
#include "platform/platform.h"
#include "results/print_preview.h"

namespace velumar {

// The logic of the print preview. It works on the chart of the result window itself, so that one
// changes its size with the preview; a result window that was closed comes back hidden.
class PreviewWindow : private PreviewChart {
 public:
  PreviewWindow(Desktop& desktop, Platform& platform);

 private:
  void BindEvents();
  void Load();
  void Close();
  // Shows where the sheet and the picture on it are.
  void ShowPlaces();
  // Takes the chart as it is now for the picture on the sheet, as each change of its size does.
  void TakePicture();
  void ChooseEntry(std::size_t list, std::size_t entry);
  void Print();
  Graph2& Window() { return desktop_.graph2(); }
  Chart& ShownChart() const { return desktop_.frmResult().MSChart1; }

  double Width() const override;
  double Height() const override;
  void SetWidth(double width) override;
  void SetHeight(double height) override;
  std::int32_t chwd() const override { return desktop_.frmResult().chwd; }
  std::int32_t chht() const override { return desktop_.frmResult().chht; }
  void SetChwd(std::int32_t width) override { desktop_.frmResult().chwd = width; }
  void SetChht(std::int32_t height) override { desktop_.frmResult().chht = height; }

  Desktop& desktop_;
  Platform& platform_;
  std::optional<PrintPreview> preview_;  // made anew at each load
};

}  // namespace velumar
