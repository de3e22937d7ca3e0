#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velumar {

// The hosts under which the service answers: addresses, "localhost", this machine's name and those
// that were allowed. A web page that lets a name of its own lead here reaches nothing.
class AllowedHosts {
 public:
  explicit AllowedHosts(std::vector<std::string> names);
  // `host` is the value of a Host header, with or without a port.
  bool Allows(std::string_view host) const;

 private:
  std::vector<std::string> names_;  // in small letters
};

}  // namespace velumar
