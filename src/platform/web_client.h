#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include "platform/event_loop.h"

namespace velumar {

// Why a request failed, as the end of a sentence: "no answer within 60 seconds".
class WebError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Requests to a web service of the trader's choice. Its answers are not trusted: they are limited
// in time and size, and redirects are not followed.
class WebClient {
 public:
  virtual ~WebClient() = default;
  // Requests `target` (path and query) from `address`, for example "http://scores.example:8080",
  // and returns the text of the answer. The target is sent byte by byte, so line ends in it are
  // refused. Events run during the request; it is cancelled once `wanted` returns false. Throws
  // WebError if it fails or the service refuses it.
  virtual std::string Get(const std::string& address, std::string_view target,
                          const std::function<bool()>& wanted) = 0;
};

// Uses libcurl on the program's one thread. Answers are limited to 1 MB, headers to
// 64 KB.
std::unique_ptr<WebClient> SystemWebClient(
    EventLoop& events, std::chrono::milliseconds time_out = std::chrono::seconds{60});

}  // namespace velumar
