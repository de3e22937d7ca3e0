#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velumar {

enum class RegistryRoot : std::uint8_t {
  kNone,
  kClassesRoot,
  kCurrentUser,
  kLocalMachine,
  kUsers,
  kPerformanceData,
  kCurrentConfig,
  kDynData
};

// Value types, by their usual numbers.
enum class RegistryType : std::uint32_t { kString = 1, kBinary = 3, kDWord = 4 };

using RegistryKey = std::uint64_t;

// The registry functions. Every call returns a code: 0 for success, 2 for a missing key or value, 5
// for denied access, 234 for a value that doesn't fit the buffer, 1009 for a damaged registry, 1013
// for a key that can't be written.
class Registry {
 public:
  static constexpr std::uint32_t kRead = 0x20019;
  static constexpr std::uint32_t kWrite = 0x20006;

  virtual ~Registry() = default;
  virtual long OpenKey(RegistryRoot root, std::string_view sub_key, std::uint32_t access,
                       RegistryKey& key) = 0;
  virtual void CloseKey(RegistryKey key) = 0;
  virtual long QueryValue(RegistryKey key, std::string_view name, RegistryType& type,
                          std::string& bytes) = 0;
  virtual long SetValue(RegistryKey key, std::string_view name, RegistryType type,
                        std::string_view bytes) = 0;
  virtual long DeleteValue(RegistryKey key, std::string_view name) = 0;
  virtual long CreateKey(RegistryRoot root, std::string_view sub_key) = 0;
  virtual long DeleteKey(RegistryRoot root, std::string_view sub_key) = 0;
};

}  // namespace velumar
