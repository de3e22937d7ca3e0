#pragma once

#include <QLockFile>
#include <QString>
#include <functional>
#include <memory>
#include <string>

#include "app/mail_notice.h"

namespace velumar {

// One Velumar runs per settings folder: two would write over each other's store and places. The
// folder's lock goes with the process, however it ends.
class SingleInstance {
 public:
  // The folder is made when it is missing.
  explicit SingleInstance(const QString& settings_folder);

  // False while another process has the folder.
  bool First() const { return first_; }
  // Asks the one that has it to come to the front. False where it can't be reached in three
  // seconds.
  bool CallOther() const;
  // From here on `come` runs when another start asks so.
  void Listen(std::function<void()> come);

 private:
  std::string mailbox_;
  QLockFile lock_;
  bool first_;
  std::unique_ptr<MailNotice> notice_;
};

}  // namespace velumar
