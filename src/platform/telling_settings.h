#pragma once

#include <exception>
#include <string>

#include "platform/services.h"

namespace velumar {

// Settings that never stand in the way: one that can't be saved is told once, and what the user was
// doing goes on.
class TellingSettings : public SettingsStore {
 public:
  TellingSettings(SettingsStore& kept, MessageBoxes& boxes) : kept_(kept), boxes_(boxes) {}

  std::optional<std::string> Read(std::string_view key) const override { return kept_.Read(key); }

  std::optional<std::string> ReadFrom(std::string_view section,
                                      std::string_view key) const override {
    return kept_.ReadFrom(section, key);
  }
  std::string Place() const override { return kept_.Place(); }

  void Save(std::string_view key, std::string_view text) override {
    try {
      kept_.Save(key, text);
    } catch (const std::exception& error) {
      if (told_) return;
      told_ = true;
      boxes_.Show("Settings can't be kept. " + std::string(error.what()), BoxIcon::kExclamation);
    }
  }

 private:
  SettingsStore& kept_;
  MessageBoxes& boxes_;
  bool told_ = false;
};

}  // namespace velumar
