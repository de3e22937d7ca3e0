#include "scored/connection_deadlines.h"

#include <sys/socket.h>

#include <algorithm>

namespace velumar {

ConnectionDeadlines::ConnectionDeadlines(std::chrono::milliseconds longest)
    : longest_(longest), watch_([this] { Watch(); }) {}

ConnectionDeadlines::~ConnectionDeadlines() {
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  changed_.notify_one();
  watch_.join();
}

void ConnectionDeadlines::Began(int socket) {
  {
    const std::lock_guard lock(mutex_);
    ends_[socket] = Clock::now() + longest_;
  }
  changed_.notify_one();
}

void ConnectionDeadlines::Ended(int socket) {
  const std::lock_guard lock(mutex_);
  ends_.erase(socket);
}

void ConnectionDeadlines::Watch() {
  std::unique_lock lock(mutex_);
  while (!stopping_) {
    const Clock::time_point now = Clock::now();
    Clock::time_point next = now + longest_;
    std::erase_if(ends_, [&](const auto& connection) {
      if (connection.second > now) {
        next = std::min(next, connection.second);
        return false;
      }
      // The server sees the end of the connection, and closes it.
      ::shutdown(connection.first, SHUT_RDWR);
      return true;
    });
    changed_.wait_until(lock, next);
  }
}

}  // namespace velumar
