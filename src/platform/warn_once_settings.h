#pragma once

#include <exception>
#include <string>

#include "platform/services.h"

namespace velumar {

// Settings that never stop the user: if one can't be saved, a box says so once, and the operation
// continues.
class WarnOnceSettings : public SettingsStore {
 public:
  WarnOnceSettings(SettingsStore& store, MessageBoxes& boxes) : store_(store), boxes_(boxes) {}

  std::optional<std::string> ReadFrom(std::string_view section,
                                      std::string_view key) const override {
    return store_.ReadFrom(section, key);
  }
  std::string Place() const override { return store_.Place(); }

  void Save(std::string_view key, std::string_view text) override {
    try {
      store_.Save(key, text);
    } catch (const std::exception& error) {
      if (warned_) return;
      warned_ = true;
      boxes_.Show("Settings could not be saved. " + std::string(error.what()),
                  BoxIcon::kExclamation);
    }
  }

 private:
  SettingsStore& store_;
  MessageBoxes& boxes_;
  bool warned_ = false;
};

}  // namespace velumar
