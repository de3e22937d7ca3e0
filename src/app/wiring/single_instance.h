#pragma once

#include <QString>
#include <functional>
#include <memory>
#include <string>

#include "platform/file_lock.h"
#include "platform/ipc.h"

namespace velumar {

// Allows one Velumar per settings folder: two would overwrite each other's store and settings. The
// system releases the folder's lock ("running") however the process ends. If nothing can be locked,
// as in a read-only folder, a process that answers calls counts as the first.
class SingleInstance {
 public:
  // Creates the folder if it is missing.
  explicit SingleInstance(const QString& settings_folder);
  ~SingleInstance() { Release(); }

  // False if another process uses the folder.
  bool First() const { return first_; }
  // Asks that process to come to the front. Returns false if it doesn't answer within three
  // seconds.
  bool CallOther() const;
  // Calls `come` whenever another start of Velumar asks for it.
  void Listen(std::function<void()> come);
  // Removes the lock, for a process that ends without running destructors.
  void Release() { lock_.Remove(); }

 private:
  std::string listener_name_;
  FileLock lock_;
  bool first_ = false;
  std::unique_ptr<MessageListener> listener_;
};

}  // namespace velumar
