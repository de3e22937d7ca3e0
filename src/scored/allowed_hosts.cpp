#include "scored/allowed_hosts.h"

#include <arpa/inet.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>

namespace velumar {

namespace {

std::string Lower(std::string_view text) {
  std::string lower(text);
  std::ranges::transform(lower, lower.begin(),
                         [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return lower;
}

std::string MachineName() {
  std::array<char, 256> name{};
  return gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

bool IsAddress(const std::string& text, int family) {
  std::array<unsigned char, sizeof(in6_addr)> address{};
  return inet_pton(family, text.c_str(), address.data()) == 1;
}

bool IsPort(std::string_view text) {
  return std::ranges::all_of(text, [](unsigned char c) { return std::isdigit(c) != 0; });
}

}  // namespace

AllowedHosts::AllowedHosts(std::vector<std::string> names) : names_(std::move(names)) {
  const std::string machine = MachineName();
  for (const std::string& name :
       {std::string("localhost"), machine, machine.substr(0, machine.find('.'))}) {
    if (!name.empty()) names_.push_back(name);
  }
  std::ranges::transform(names_, names_.begin(), Lower);
}

bool AllowedHosts::Allows(std::string_view host) const {
  const std::size_t colon = host.rfind(':');
  if (colon != std::string_view::npos && IsPort(host.substr(colon + 1))) {
    host = host.substr(0, colon);
  }
  if (host.starts_with('[') && host.ends_with(']')) {
    return IsAddress(std::string(host.substr(1, host.size() - 2)), AF_INET6);
  }
  const std::string name = Lower(host);
  return IsAddress(name, AF_INET) || std::ranges::find(names_, name) != names_.end();
}

}  // namespace velumar
