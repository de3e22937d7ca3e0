#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velumar {

enum class RegistryRoot : std::uint8_t { kCurrentUser, kLocalMachine };

// Texts in the registry of the system. A key is a path with "\" between its parts. The functions
// that return a code return 0 for success, 2 for a missing key or value, 5 for denied access, 1009
// for a damaged registry or value, 1013 for a key that can't be written, or another code of
// Windows.
class Registry {
 public:
  virtual ~Registry() = default;
  // False also for a key that can't be read.
  virtual bool HasKey(RegistryRoot root, std::string_view key) = 0;
  // Creates the key and its parents. An existing key stays as it is.
  virtual long CreateKey(RegistryRoot root, std::string_view key) = 0;

  // Values of the current user. The key must exist.
  virtual long ReadText(std::string_view key, std::string_view name, std::string& text) = 0;
  virtual long WriteText(std::string_view key, std::string_view name, std::string_view text) = 0;
};

}  // namespace velumar
