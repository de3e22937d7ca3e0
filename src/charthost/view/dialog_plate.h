#pragma once

#include <memory>

namespace velumar {

// Programs look for a file dialog by the class that the system's own dialogs have, where windows
// have classes. The dialog of this program is none of those, so a window of that class and title
// that is never seen stands beside it while it is open.
class DialogPlate {
 public:
  DialogPlate();
  ~DialogPlate();

  void PutUp();
  void TakeDown();

 private:
  struct Plate;
  std::unique_ptr<Plate> plate_;
};

}  // namespace velumar
