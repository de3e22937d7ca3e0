#pragma once

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <string>
#include <thread>

namespace velumar {

inline sockaddr_in LocalPort(std::uint16_t port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

// A client that sends any bytes to a port of this machine.
class RawClient {
 public:
  explicit RawClient(std::uint16_t port) : socket_(socket(AF_INET, SOCK_STREAM, 0)) {
    const sockaddr_in address = LocalPort(port);
    open_ = connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0;
  }
  ~RawClient() { close(socket_); }
  RawClient(const RawClient&) = delete;
  RawClient& operator=(const RawClient&) = delete;

  void Send(const std::string& bytes) {
    if (!bytes.empty() && send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL) < 0)
      open_ = false;
  }
  // False once the other end has closed the connection.
  bool Open() const {
    char byte = 0;
    const auto count = recv(socket_, &byte, 1, MSG_DONTWAIT | MSG_PEEK);
    return open_ && (count > 0 || (count < 0 && errno == EAGAIN));
  }
  // Everything until the other end closes the connection.
  std::string ReceiveAll() const {
    std::string received;
    std::array<char, 4096> block{};
    for (ssize_t count = 0; (count = recv(socket_, block.data(), block.size(), 0)) > 0;) {
      received.append(block.data(), static_cast<std::size_t>(count));
    }
    return received;
  }

 private:
  int socket_;
  bool open_ = false;
};

// A server that accepts one connection after another and answers any request with the given bytes,
// whether or not they are HTTP.
class HostileServer {
 public:
  struct Answer {
    std::string first;
    std::string repeated = {};  // sent again and again after the first
    int pause_ms = 0;           // between two repeats
    bool hangs_up = false;      // after the first; otherwise the connection stays open
  };

  explicit HostileServer(Answer answer) : answer_(std::move(answer)) {
    sockaddr_in address = LocalPort(0);
    socklen_t size = sizeof(address);
    bind(listening_, reinterpret_cast<sockaddr*>(&address), size);
    listen(listening_, 8);
    getsockname(listening_, reinterpret_cast<sockaddr*>(&address), &size);
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] { Serve(); });
  }
  ~HostileServer() {
    stopping_ = true;
    thread_.join();
    close(listening_);
  }
  HostileServer(const HostileServer&) = delete;
  HostileServer& operator=(const HostileServer&) = delete;

  std::string Address() const { return "http://127.0.0.1:" + std::to_string(port_); }
  std::size_t Sent() const { return sent_; }  // bytes
  int Connections() const { return connections_; }

 private:
  static void Sleep(int ms) { std::this_thread::sleep_for(std::chrono::milliseconds(ms)); }

  void Serve() {
    while (!stopping_) {
      pollfd incoming{listening_, POLLIN, 0};
      if (poll(&incoming, 1, 20) != 1) continue;
      const int connection = accept(listening_, nullptr, nullptr);
      ++connections_;
      Respond(connection);
      close(connection);
    }
  }
  void Respond(int connection) {
    std::array<char, 4096> request{};
    if (recv(connection, request.data(), request.size(), 0) <= 0) return;
    if (!Send(connection, answer_.first)) return;
    while (!stopping_ && !answer_.hangs_up) {
      Sleep(answer_.repeated.empty() ? 10 : answer_.pause_ms);
      if (!Send(connection, answer_.repeated)) return;
    }
  }
  bool Send(int connection, const std::string& bytes) {
    for (std::size_t sent = 0; sent < bytes.size() && !stopping_;) {
      const auto count =
          send(connection, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL | MSG_DONTWAIT);
      if (count < 0 && errno != EAGAIN) return false;
      if (count < 0) {
        Sleep(1);
        continue;
      }
      sent += static_cast<std::size_t>(count);
      sent_ += static_cast<std::size_t>(count);
    }
    return true;
  }

  Answer answer_;
  int listening_ = socket(AF_INET, SOCK_STREAM, 0);
  std::uint16_t port_ = 0;
  std::atomic<std::size_t> sent_ = 0;
  std::atomic<int> connections_ = 0;
  std::atomic<bool> stopping_ = false;
  std::thread thread_;
};

}  // namespace velumar
