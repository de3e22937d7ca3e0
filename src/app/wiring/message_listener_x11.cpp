#include <QSocketNotifier>
#include <stdexcept>
#include <utility>

#include "app/wiring/message_listener.h"
#include "platform/x11/mailbox.h"

namespace velumar {

struct MessageListener::Box {
  Box(std::string_view name, std::function<void(const Mail&)> receive)
      : box(name), notifier(box.Descriptor(), QSocketNotifier::Read) {
    QObject::connect(&notifier, &QSocketNotifier::activated, &notifier,
                     [this, receive = std::move(receive)] {
                       for (const Mail& mail : box.Take()) receive(mail);
                     });
  }

  X11Mailbox box;
  QSocketNotifier notifier;
};

MessageListener::MessageListener(std::string_view name, std::function<void(const Mail&)> receive) {
  try {
    box_ = std::make_unique<Box>(name, std::move(receive));
  } catch (const std::runtime_error&) {
    box_ = nullptr;
  }
}

MessageListener::~MessageListener() = default;

}  // namespace velumar
