#include <curl/curl.h>

#include <algorithm>
#include <cstddef>
#include <utility>

#include "platform/web_client.h"

namespace velumar {

namespace {

using std::chrono_literals::operator""ms;

constexpr auto kBetweenLooks = 10ms;
constexpr std::size_t kLargestAnswer = std::size_t{1} << 20;  // bytes, without headers
constexpr std::size_t kLargestHeaders = std::size_t{1} << 16;

struct CloseUrl {
  void operator()(CURLU* url) const { curl_url_cleanup(url); }
};
struct CloseRequest {
  void operator()(CURL* request) const { curl_easy_cleanup(request); }
};
struct CloseTransfers {
  void operator()(CURLM* transfers) const { curl_multi_cleanup(transfers); }
};

// The parts of a service's address.
struct Place {
  std::string server;  // "http://scores.example:8080/"
  std::string folder;  // "" or "/practice"
};

std::string Piece(CURLU* url, CURLUPart part) {
  char* text = nullptr;
  if (curl_url_get(url, part, &text, 0) != CURLUE_OK || text == nullptr) return {};
  std::string piece = text;
  curl_free(text);
  return piece;
}

Place PlaceOf(const std::string& address) {
  const std::unique_ptr<CURLU, CloseUrl> url(curl_url());
  const std::string whole =
      address.find("://") == std::string::npos ? "http://" + address : address;
  if (!url || curl_url_set(url.get(), CURLUPART_URL, whole.c_str(), 0) != CURLUE_OK) {
    throw WebError("\"" + address + "\" is not a valid URL");
  }
  if (Piece(url.get(), CURLUPART_SCHEME) != "http") {
    throw WebError("\"" + address + "\" must begin with http://");
  }
  if (!Piece(url.get(), CURLUPART_QUERY).empty() || !Piece(url.get(), CURLUPART_USER).empty()) {
    throw WebError("\"" + address + "\" may only have a server, a port and a folder");
  }
  std::string folder = Piece(url.get(), CURLUPART_PATH);
  while (folder.ends_with('/')) folder.pop_back();
  curl_url_set(url.get(), CURLUPART_PATH, "/", 0);
  curl_url_set(url.get(), CURLUPART_FRAGMENT, nullptr, 0);
  return {Piece(url.get(), CURLUPART_URL), std::move(folder)};
}

// What has been received so far, within the limits.
struct Answer {
  std::string text;
  std::size_t header_bytes = 0;
  bool too_large = false;
};

// Returning less than `count` ends a transfer.
std::size_t TakeText(const char* bytes, std::size_t, std::size_t count, void* taker) {
  Answer& answer = *static_cast<Answer*>(taker);
  answer.too_large = answer.text.size() + count > kLargestAnswer;
  if (answer.too_large) return 0;
  answer.text.append(bytes, count);
  return count;
}

std::size_t TakeHeader(const char*, std::size_t, std::size_t count, void* taker) {
  Answer& answer = *static_cast<Answer*>(taker);
  answer.header_bytes += count;
  answer.too_large = answer.header_bytes > kLargestHeaders;
  return answer.too_large ? 0 : count;
}

using Request = std::unique_ptr<CURL, CloseRequest>;

Request MakeRequest(const Place& place, const std::string& target, Answer& answer,
                    std::chrono::milliseconds time_out) {
  Request request(curl_easy_init());
  CURL* const handle = request.get();
  if (handle == nullptr) throw WebError("out of memory");
  curl_easy_setopt(handle, CURLOPT_URL, place.server.c_str());
  curl_easy_setopt(handle, CURLOPT_REQUEST_TARGET, target.c_str());
  curl_easy_setopt(handle, CURLOPT_USERAGENT, "Velumar");
  curl_easy_setopt(handle, CURLOPT_PROTOCOLS_STR, "http");
  curl_easy_setopt(handle, CURLOPT_FOLLOWLOCATION, 0L);
  // A proxy would need the whole address, which can't have blanks.
  curl_easy_setopt(handle, CURLOPT_PROXY, "");
  curl_easy_setopt(handle, CURLOPT_TIMEOUT_MS, static_cast<long>(time_out.count()));
  curl_easy_setopt(handle, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(time_out.count()));
  curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(handle, CURLOPT_QUICK_EXIT, 1L);  // don't wait for a name lookup
  curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, &TakeText);
  curl_easy_setopt(handle, CURLOPT_WRITEDATA, &answer);
  curl_easy_setopt(handle, CURLOPT_HEADERFUNCTION, &TakeHeader);
  curl_easy_setopt(handle, CURLOPT_HEADERDATA, &answer);
  return request;
}

// Runs one request until it ends or is no longer wanted.
class Transfer {
 public:
  Transfer(CURL* request, EventLoop& events)
      : transfers_(curl_multi_init()), request_(request), events_(events) {
    if (!transfers_) throw WebError("out of memory");
    curl_multi_add_handle(transfers_.get(), request_);
  }
  ~Transfer() { curl_multi_remove_handle(transfers_.get(), request_); }
  Transfer(const Transfer&) = delete;
  Transfer& operator=(const Transfer&) = delete;

  CURLcode Run(const std::function<bool()>& wanted) {
    int running = 1;
    while (curl_multi_perform(transfers_.get(), &running) == CURLM_OK && running > 0) {
      events_.WaitFor(kBetweenLooks);
      if (!wanted()) throw WebError("cancelled");
    }
    int left = 0;
    const CURLMsg* const message = curl_multi_info_read(transfers_.get(), &left);
    return message == nullptr ? CURLE_FAILED_INIT : message->data.result;
  }

 private:
  std::unique_ptr<CURLM, CloseTransfers> transfers_;
  CURL* request_;
  EventLoop& events_;
};

std::string InSeconds(std::chrono::milliseconds time) {
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time).count();
  return std::to_string(seconds) + (seconds == 1 ? " second" : " seconds");
}

std::string Reason(CURLcode code, const Answer& answer, std::chrono::milliseconds time_out) {
  if (answer.too_large) return "the answer is too long";
  switch (code) {
    case CURLE_COULDNT_RESOLVE_HOST:
      return "there is no server with that name";
    case CURLE_COULDNT_CONNECT:
      return "the server can't be reached";
    case CURLE_OPERATION_TIMEDOUT:
      return "no answer within " + InSeconds(time_out);
    default:
      return std::string("the connection failed (") + curl_easy_strerror(code) + ")";
  }
}

// The first line of a refusal's text, unless it is a web page or too long to show.
std::string Remark(const std::string& text) {
  constexpr std::size_t kLongest = 120;
  const std::string line = text.substr(0, text.find_first_of("\r\n"));
  return line.size() > kLongest || line.starts_with('<') ? "" : line;
}

void RequireSuccess(CURL* request, const std::string& text) {
  constexpr long kSuccess = 200;
  constexpr long kMovedElsewhere = 300;
  constexpr long kRefused = 400;
  long status = 0;
  curl_easy_getinfo(request, CURLINFO_RESPONSE_CODE, &status);
  if (status >= kSuccess && status < kMovedElsewhere) return;
  const bool elsewhere = status >= kMovedElsewhere && status < kRefused;
  std::string why =
      (elsewhere ? "the server redirects to another address (" : "the server refused it (") +
      std::to_string(status) + ")";
  std::string remark = elsewhere ? "" : Remark(text);
  if (remark.ends_with('.')) remark.pop_back();  // the caller adds its own
  throw WebError(remark.empty() ? why : why + ": " + remark);
}

bool StartLibrary() {
  static const bool started = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
  return started;
}

class CurlWebClient : public WebClient {
 public:
  CurlWebClient(EventLoop& events, std::chrono::milliseconds time_out)
      : events_(events), time_out_(time_out) {}

  std::string Get(const std::string& address, std::string_view target,
                  const std::function<bool()>& wanted) override {
    constexpr std::string_view kEndsOfALine("\r\n\0", 3);
    if (target.find_first_of(kEndsOfALine) != std::string_view::npos) {
      throw WebError("the text has a line end");
    }
    if (!StartLibrary()) throw WebError("libcurl could not be started");
    const Place place = PlaceOf(address);
    Answer answer;
    const std::string whole = place.folder + std::string(target);
    const Request request = MakeRequest(place, whole, answer, time_out_);
    const CURLcode code = Transfer(request.get(), events_).Run(wanted);
    if (code != CURLE_OK) throw WebError(Reason(code, answer, time_out_));
    RequireSuccess(request.get(), answer.text);
    return std::move(answer.text);
  }

 private:
  EventLoop& events_;
  std::chrono::milliseconds time_out_;
};

}  // namespace

std::unique_ptr<WebClient> SystemWebClient(EventLoop& events, std::chrono::milliseconds time_out) {
  return std::make_unique<CurlWebClient>(events, time_out);
}

}  // namespace velumar
