#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "platform/mailbox.h"

namespace velumar {

// Tells of mail as it comes in, from within the event loop.
class MailNotice {
 public:
  virtual ~MailNotice() = default;
};

// Null where this desktop has no mailboxes.
std::unique_ptr<MailNotice> OpenMailbox(std::string_view name,
                                        std::function<void(const Mail&)> receive);

}  // namespace velumar
