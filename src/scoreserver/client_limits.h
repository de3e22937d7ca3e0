#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <map>
#include <mutex>
#include <stop_token>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace velumar {

// The host names that the server answers to: addresses, "localhost", the machine's own name and
// those that were allowed. A web page that resolves its own name to this machine is refused.
class AllowedHosts {
 public:
  explicit AllowedHosts(std::vector<std::string> names);
  // `host` is the value of a Host header, with or without a port.
  bool Allows(std::string_view host) const;

 private:
  std::vector<std::string> names_;  // in upper case
};

// Limits the scores that one address may post per minute. Memory is bounded: once kAddresses
// addresses have posted in a minute, new ones wait for the next.
class PostLimit {
 public:
  using Moment = std::chrono::steady_clock::time_point;
  static constexpr std::size_t kAddresses = 10'000;

  explicit PostLimit(int per_minute) : per_minute_(per_minute) {}
  // Counts one post of the address; returns false if it is one too many.
  bool Allows(const std::string& address, Moment now);

 private:
  int per_minute_;
  Moment minute_{};
  std::map<std::string, int> posts_;  // in this minute
};

// Closes each connection a fixed time after it was opened, even if the client keeps sending: one
// that trickles bytes would hold its place forever. Thread-safe.
class ConnectionDeadlines {
 public:
  explicit ConnectionDeadlines(std::chrono::milliseconds longest);

  void Opened(int socket);
  // Call before the socket is closed: its number may be reused at once.
  void Closed(int socket);

 private:
  using Clock = std::chrono::steady_clock;

  void Watch(const std::stop_token& stop);

  std::chrono::milliseconds longest_;
  std::mutex mutex_;
  std::condition_variable_any stopped_;
  std::map<int, Clock::time_point> deadlines_;  // by socket
  std::jthread watch_;                          // last, since it uses the others
};

}  // namespace velumar
