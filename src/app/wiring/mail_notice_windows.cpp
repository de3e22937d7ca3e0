#include "app/wiring/mail_notice.h"

#include <stdexcept>
#include <utility>

#include "platform/windows/mailbox.h"

namespace velumar {

namespace {

class WindowsMailNotice : public MailNotice {
 public:
  WindowsMailNotice(std::string_view name, std::function<void(const Mail&)> receive)
      : box_(name, std::move(receive)) {}

 private:
  WindowsMailbox box_;
};

}  // namespace

std::unique_ptr<MailNotice> OpenMailbox(std::string_view name,
                                        std::function<void(const Mail&)> receive) {
  try {
    return std::make_unique<WindowsMailNotice>(name, std::move(receive));
  } catch (const std::runtime_error&) {
    return nullptr;
  }
}

}  // namespace velumar
