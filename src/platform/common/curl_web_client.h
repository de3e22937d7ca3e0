#pragma once

#include <chrono>
#include <cstddef>

#include "platform/web_client.h"

namespace velumar {

// Runs requests with libcurl on the program's one thread.
class CurlWebClient : public WebClient {
 public:
  static constexpr std::size_t kLargestAnswer = std::size_t{1} << 20;  // bytes, without headers
  static constexpr std::size_t kLargestHeaders = std::size_t{1} << 16;

  explicit CurlWebClient(EventLoop& events,
                         std::chrono::milliseconds time_out = std::chrono::seconds{60});

  std::string Get(const std::string& address, std::string_view target,
                  const std::function<bool()>& wanted) override;

 private:
  EventLoop& events_;
  std::chrono::milliseconds time_out_;
};

}  // namespace velumar
