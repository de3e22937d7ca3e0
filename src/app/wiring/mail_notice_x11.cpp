#include <QSocketNotifier>
#include <stdexcept>
#include <utility>

#include "app/wiring/mail_notice.h"
#include "platform/x11/mailbox.h"

namespace velumar {

namespace {

class X11MailNotice : public MailNotice {
 public:
  X11MailNotice(std::string_view name, std::function<void(const Mail&)> receive)
      : box_(name), notifier_(box_.Descriptor(), QSocketNotifier::Read) {
    QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_,
                     [this, receive = std::move(receive)] {
                       for (const Mail& mail : box_.Take()) receive(mail);
                     });
  }

 private:
  X11Mailbox box_;
  QSocketNotifier notifier_;
};

}  // namespace

std::unique_ptr<MailNotice> OpenMailbox(std::string_view name,
                                        std::function<void(const Mail&)> receive) {
  try {
    return std::make_unique<X11MailNotice>(name, std::move(receive));
  } catch (const std::runtime_error&) {
    return nullptr;
  }
}

}  // namespace velumar
