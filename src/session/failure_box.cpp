#include "session/failure_box.h"

namespace velumar {

std::string LibraryErrorText(const MetaLibError& error) {
  return std::to_string(error.Number()) + "\r" + error.what();
}

void ShowFailure(MessageBoxes& boxes, const std::string& what, const std::exception& error) {
  const auto* library = dynamic_cast<const MetaLibError*>(&error);
  const std::string text =
      library != nullptr ? LibraryErrorText(*library) + "\r" + what : what + "\n" + error.what();
  boxes.Show(text, BoxIcon::kExclamation);
}

}  // namespace velumar
