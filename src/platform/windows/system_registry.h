#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "platform/registry.h"

namespace velumar {

// The registry of the system, as programs of 32 bits see it. Names and texts are UTF-8 here and
// UTF-16 there.
class SystemRegistry : public Registry {
 public:
  SystemRegistry();
  ~SystemRegistry() override;

  long OpenKey(RegistryRoot root, std::string_view sub_key, std::uint32_t access,
               RegistryKey& key) override;
  void CloseKey(RegistryKey key) override;
  long QueryValue(RegistryKey key, std::string_view name, RegistryType& type,
                  std::string& bytes) override;
  long SetValue(RegistryKey key, std::string_view name, RegistryType type,
                std::string_view bytes) override;
  long DeleteValue(RegistryKey key, std::string_view name) override;
  long CreateKey(RegistryRoot root, std::string_view sub_key) override;
  // A key with other keys under it isn't deleted: 5.
  long DeleteKey(RegistryRoot root, std::string_view sub_key) override;

 private:
  struct Opened;
  std::map<RegistryKey, Opened> opened_;
  RegistryKey last_key_ = 0;
};

}  // namespace velumar
