#pragma once

#include <cstddef>
#include <string>

namespace velumar {

// Of a security, in bytes as Latin-1.
inline constexpr std::size_t kLongestSecurityName = 45;

// A security to be imported. `interval` is -1 for a daily series, else minutes.
struct NewSecurity {
  std::string symbol;  // UTF-8, at most 14 bytes as Latin-1
  // UTF-8, cut to what the index files hold. Empty: the name of the replaced security, or the
  // symbol.
  std::string name;
  int interval = -1;
};

// Throws MetaLibError (kNotStorable) if the symbol, the name or the interval cannot be stored.
void RequireStorable(const NewSecurity& security);

// A security's name as the index files hold it: cut, without blanks around it. Throws MetaLibError
// (kNotStorable).
std::string NameAsStored(const std::string& name);

}  // namespace velumar
