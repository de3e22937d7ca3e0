#pragma once

#include <QString>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "app/wiring/mail_notice.h"
#include "platform/file_lock.h"
#include "platform/services.h"

namespace velumar {

// One Velumar runs per settings folder: two would write over each other's store and places. The
// system frees the folder's lock ("running") however the process ends.
class SingleInstance {
 public:
  // The folder is made when it is missing.
  explicit SingleInstance(const QString& settings_folder);
  ~SingleInstance() { Release(); }

  // False while another process has the folder.
  bool First() const { return first_; }
  // Asks the one that has it to come to the front. False where it can't be reached in three
  // seconds.
  bool CallOther() const;
  // From here on `come` runs when another start asks so.
  void Listen(std::function<void()> come);
  // Removes the lock, for a process that ends without running destructors.
  void Release() { lock_.Remove(); }

 private:
  std::string mailbox_;
  FileLock lock_;
  bool first_ = false;
  std::unique_ptr<MailNotice> notice_;
};

// Programs that release the lock before they end this process.
class ReleasingPrograms : public Programs {
 public:
  ReleasingPrograms(Programs& programs, SingleInstance& instance)
      : programs_(programs), instance_(instance) {}

  void Start(std::string_view command_line) override { programs_.Start(command_line); }
  void OpenInBrowser(std::string_view address) override { programs_.OpenInBrowser(address); }
  void EndProcess() override;

 private:
  Programs& programs_;
  SingleInstance& instance_;
};

}  // namespace velumar
