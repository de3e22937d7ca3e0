#pragma once

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>

namespace velumar {

// Ends each connection a fixed time after it began, whatever trickles over it: a client that sends
// a byte now and then would hold its place forever.
class ConnectionDeadlines {
 public:
  explicit ConnectionDeadlines(std::chrono::milliseconds longest);
  ~ConnectionDeadlines();
  ConnectionDeadlines(const ConnectionDeadlines&) = delete;
  ConnectionDeadlines& operator=(const ConnectionDeadlines&) = delete;

  void Began(int socket);
  // Before the socket is closed, since its number may then be another connection's.
  void Ended(int socket);

 private:
  using Clock = std::chrono::steady_clock;

  void Watch();

  std::chrono::milliseconds longest_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::map<int, Clock::time_point> ends_;  // by socket
  bool stopping_ = false;
  std::thread watch_;
};

}  // namespace velumar
