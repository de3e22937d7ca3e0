#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "platform/mailbox.h"

namespace velumar {

// A mailbox: a window that is never shown, found by its title. It hears of mail while its thread
// reads its messages, and is gone when the process ends, however it ends.
class WindowsMailbox {
 public:
  // Throws std::runtime_error where the desktop gives no window.
  WindowsMailbox(std::string_view name, std::function<void(const Mail&)> receive);
  WindowsMailbox(const WindowsMailbox&) = delete;
  WindowsMailbox& operator=(const WindowsMailbox&) = delete;
  ~WindowsMailbox();

 private:
  struct Box;
  std::unique_ptr<Box> box_;
};

}  // namespace velumar
