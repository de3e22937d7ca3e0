#include <stdexcept>
#include <utility>

#include "app/wiring/message_listener.h"
#include "platform/windows/mailbox.h"

namespace velumar {

struct MessageListener::Box {
  WindowsMailbox box;
};

MessageListener::MessageListener(std::string_view name, std::function<void(const Mail&)> receive) {
  try {
    box_ = std::unique_ptr<Box>(new Box{{name, std::move(receive)}});
  } catch (const std::runtime_error&) {
    box_ = nullptr;
  }
}

MessageListener::~MessageListener() = default;

}  // namespace velumar
