#include "scored/hostile_server.h"

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>

namespace velumar {

HostileServer::HostileServer(Manner manner) : manner_(std::move(manner)) {
  listening_ = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in place{};
  place.sin_family = AF_INET;
  place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof(place);
  bind(listening_, reinterpret_cast<sockaddr*>(&place), size);
  listen(listening_, 8);
  getsockname(listening_, reinterpret_cast<sockaddr*>(&place), &size);
  port_ = ntohs(place.sin_port);
  thread_ = std::thread([this] { Serve(); });
}

HostileServer::~HostileServer() {
  ending_ = true;
  thread_.join();
  close(listening_);
}

void HostileServer::Serve() {
  while (!ending_) {
    pollfd look{listening_, POLLIN, 0};
    if (poll(&look, 1, 20) != 1) continue;
    const int line = accept(listening_, nullptr, nullptr);
    ++connections_;
    Talk(line);
    close(line);
  }
}

void HostileServer::Talk(int line) {
  char asked[4096];
  if (recv(line, asked, sizeof(asked), 0) <= 0 || !Say(line, manner_.first)) return;
  while (!ending_ && !manner_.hangs_up) {
    std::this_thread::sleep_for(
        std::chrono::milliseconds(manner_.again.empty() ? 10 : manner_.pause_ms));
    if (!Say(line, manner_.again)) return;
  }
}

bool HostileServer::Say(int line, const std::string& bytes) {
  for (std::size_t said = 0; said < bytes.size() && !ending_;) {
    const auto count =
        send(line, bytes.data() + said, bytes.size() - said, MSG_NOSIGNAL | MSG_DONTWAIT);
    if (count < 0 && errno != EAGAIN) return false;
    if (count < 0) {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
      continue;
    }
    said += static_cast<std::size_t>(count);
    sent_ += static_cast<std::size_t>(count);
  }
  return true;
}

}  // namespace velumar
