#pragma once

#include <QObject>
#include <memory>
#include <string_view>

#include "charthost/view/journal_pictures.h"
#include "platform/ipc.h"

namespace velumar {

class MainWindow;

// Does what Velumar asks for over the direct link, and reports when the user closes the window.
// Requests run one after the other, from within the event loop.
class LinkServer {
 public:
  // The window must outlive the object. Without the system's permission to listen, only keys work.
  explicit LinkServer(MainWindow& window);

 private:
  // False for anything but a request of this protocol, and for one that fails.
  bool Accepts(std::string_view text);

  MainWindow& window_;
  JournalPictures pictures_;
  QObject lifetime_;       // of the connection to the window
  bool quitting_ = false;  // Velumar closes the window, not the user
  std::unique_ptr<MessageListener> listener_;
};

}  // namespace velumar
