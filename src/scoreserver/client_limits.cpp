#include "scoreserver/client_limits.h"

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>

#include "base/text.h"

namespace velumar {

namespace {

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
  std::ranges::transform(names_, names_.begin(), UpperCased);
}

bool AllowedHosts::Allows(std::string_view host) const {
  const std::size_t colon = host.rfind(':');
  if (colon != std::string_view::npos && IsPort(host.substr(colon + 1))) {
    host = host.substr(0, colon);
  }
  if (host.starts_with('[') && host.ends_with(']')) {
    return IsAddress(std::string(host.substr(1, host.size() - 2)), AF_INET6);
  }
  const std::string name = UpperCased(host);
  return IsAddress(name, AF_INET) || std::ranges::find(names_, name) != names_.end();
}

bool PostLimit::Allows(const std::string& address, Moment now) {
  if (now - minute_ >= std::chrono::minutes{1}) {
    minute_ = now;
    posts_.clear();
  }
  if (posts_.size() >= kAddresses && !posts_.contains(address)) return false;
  int& posts = posts_[address];
  if (posts >= per_minute_) return false;
  ++posts;
  return true;
}

ConnectionDeadlines::ConnectionDeadlines(std::chrono::milliseconds longest)
    : longest_(longest), watch_([this](const std::stop_token& stop) { Watch(stop); }) {}

// The watch need not be woken: it looks again before this deadline.
void ConnectionDeadlines::Opened(int socket) {
  const std::lock_guard lock(mutex_);
  deadlines_[socket] = Clock::now() + longest_;
}

void ConnectionDeadlines::Closed(int socket) {
  const std::lock_guard lock(mutex_);
  deadlines_.erase(socket);
}

void ConnectionDeadlines::Watch(const std::stop_token& stop) {
  std::unique_lock lock(mutex_);
  while (!stop.stop_requested()) {
    const Clock::time_point now = Clock::now();
    Clock::time_point next = now + longest_;
    std::erase_if(deadlines_, [&](const auto& connection) {
      if (connection.second > now) {
        next = std::min(next, connection.second);
        return false;
      }
      // The server notices and closes the connection.
      ::shutdown(connection.first, SHUT_RDWR);
      return true;
    });
    stopped_.wait_until(lock, stop, next, [] { return false; });
  }
}

}  // namespace velumar
