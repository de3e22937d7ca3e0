#pragma once

#include <memory>

class QWidget;

namespace velumar {

// Selects a display on which other programs can find and type into the windows of this one. Call it
// before the application object is built.
void ChooseChartDisplay();

// Shows a window that Velumar has started, maximised. The trader's window keeps the focus where the
// system allows that; elsewhere Velumar takes it back.
void ShowMaximisedForTrader(QWidget& window);

// Programs find a file dialog by the window class of the system's own dialogs. The dialog of this
// program doesn't have that class, so while it is open there is also a hidden window with that
// class and title. Does nothing on systems without window classes.
class DialogMarker {
 public:
  DialogMarker();
  ~DialogMarker();

  void Show();
  void Hide();

 private:
  struct Marker;
  std::unique_ptr<Marker> marker_;
};

}  // namespace velumar
