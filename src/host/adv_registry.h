#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <variant>

#include "platform/registry.h"
#include "platform/services.h"

namespace velumar {

// The registry by key paths: a root name, "\" and the sub key in one text. A failure shows its
// reason in a box while the flag is set, and gives false or the text "Error". Numbers and bytes
// that can't be read give "Error" likewise.
class ADVRegistry {
 public:
  ADVRegistry(Registry& registry, MessageBoxes& boxes) : registry_(registry), boxes_(boxes) {}

  void SetDisplayErrorMsg(bool show) { show_errors_ = show; }
  bool SetDWordValue(std::string_view path, std::string_view name, std::uint32_t value);
  std::variant<std::uint32_t, std::string> GetDWordValue(std::string_view path,
                                                         std::string_view name);
  bool SetBinaryValue(std::string_view path, std::string_view name, std::string_view bytes);
  std::string GetBinaryValue(std::string_view path, std::string_view name);
  bool SetStringValue(std::string_view path, std::string_view name, std::string_view text);
  std::string GetStringValue(std::string_view path, std::string_view name);
  bool CreateKey(std::string_view path);
  bool DeleteKey(std::string_view path);
  bool DeleteKeyValue(std::string_view path, std::string_view name);
  // These two say no without a box.
  bool KeyExist(std::string_view path);
  bool KeyValueExist(std::string_view path, std::string_view name);

 private:
  struct KeyPath {
    RegistryRoot root = RegistryRoot::kNone;
    std::string_view sub_key;
  };

  // False after a box when the text is no key path, and silently for an unknown root.
  bool SplitKeyPath(std::string_view path, KeyPath& parts);
  // Opens the key, does the one call, closes the key. False with a box on a failing code.
  bool WithKey(std::string_view path, std::uint32_t access,
               const std::function<long(RegistryKey)>& call);
  bool Set(std::string_view path, std::string_view name, RegistryType type, std::string_view bytes);
  bool Get(std::string_view path, std::string_view name, std::string& bytes);
  bool Succeeded(long code, std::string_view path);

  Registry& registry_;
  MessageBoxes& boxes_;
  bool show_errors_ = true;
};

// The sentence for a code of the registry's functions.
std::string RegErrorText(long code);

}  // namespace velumar
