#pragma once

#include <cstddef>
#include <functional>

#include "forms/desktop.h"
#include "platform/platform.h"
#include "shell/print_preview.h"

namespace velumar {

// What the controls of the print preview do. They resize the result window's own chart; a result
// window that was closed opens hidden.
class PreviewWindow {
 public:
  PreviewWindow(Desktop& desktop, Platform& platform);

 private:
  void BindEvents();
  void Load();
  void Close();
  // Shows where the sheet and the picture on it are.
  void ShowPlaces();
  // Lets `change` resize the chart, then takes its picture for the sheet. The picture stays as it
  // is until the next change: by then the result window may be closed or show another run.
  void Resize(const std::function<void(PreviewChart& chart)>& change);
  void ChooseEntry(std::size_t list, std::size_t entry);
  void Print();
  Graph2& Window() { return desktop_.graph2(); }

  Desktop& desktop_;
  Platform& platform_;
  PrintPreview preview_;  // new at each load
};

}  // namespace velumar
