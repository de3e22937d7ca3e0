#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "platform/mailbox.h"

namespace velumar {

// Receives the messages to a mailbox in the event loop. On a desktop without mailboxes it receives
// none.
class MessageListener {
 public:
  MessageListener(std::string_view name, std::function<void(const Mail&)> receive);
  ~MessageListener();

 private:
  struct Box;
  std::unique_ptr<Box> box_;
};

}  // namespace velumar
