#pragma once

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <string>

namespace velumar {

// A client that says any bytes to a port of this machine.
class PlainConnection {
 public:
  explicit PlainConnection(std::uint16_t port) : socket_(socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in place{};
    place.sin_family = AF_INET;
    place.sin_port = htons(port);
    place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    open_ = connect(socket_, reinterpret_cast<sockaddr*>(&place), sizeof(place)) == 0;
  }
  ~PlainConnection() { close(socket_); }
  PlainConnection(const PlainConnection&) = delete;
  PlainConnection& operator=(const PlainConnection&) = delete;

  void Say(const std::string& bytes) {
    if (!bytes.empty() && send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL) < 0)
      open_ = false;
  }
  // False once the other end has ended it.
  bool Open() {
    char byte = 0;
    const auto count = recv(socket_, &byte, 1, MSG_DONTWAIT | MSG_PEEK);
    return open_ && (count > 0 || (count < 0 && errno == EAGAIN));
  }
  // All that comes until the other end ends it.
  std::string HearAll() {
    std::string heard;
    std::array<char, 4096> block{};
    for (auto count = recv(socket_, block.data(), block.size(), 0); count > 0;
         count = recv(socket_, block.data(), block.size(), 0)) {
      heard.append(block.data(), static_cast<std::size_t>(count));
    }
    return heard;
  }

 private:
  int socket_;
  bool open_ = false;
};

}  // namespace velumar
