#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

namespace velumar {

// Two numbers that one program of ours sends to another one of the same user on the same desktop.
// The two programs agree on what they mean.
struct IpcMessage {
  std::uint32_t first = 0;
  std::uint32_t second = 0;
};

// Where Velumar listens for the keys that were typed into the chart: code, and 1 for Shift, 2 for a
// repeated key, 4 for its release. The code 0 means a mouse click.
inline constexpr std::string_view kRunKeyListener = "_VELUMAR_RUN_KEYS";
// Instead of a code: the user has closed the chart program whose process is the second number.
inline constexpr std::uint32_t kMessageChartClosed = 0xFFFFFFFF;
// A chart of another series of the store was opened, or closed; the second number is that of its
// data file.
inline constexpr std::uint32_t kMessageCompare = 0xFFFFFFFE;
inline constexpr std::uint32_t kMessageEndCompare = 0xFFFFFFFD;
inline constexpr std::uint32_t kMessageShift = 1;
inline constexpr std::uint32_t kMessageRepeated = 2;
inline constexpr std::uint32_t kMessageReleased = 4;  // the key is up again

// Sends the message to the program that listens under that name, without waiting until it is read.
// Returns false if none listens.
bool SendIpcMessage(std::string_view name, const IpcMessage& message);

// Listens for messages as long as it lives; the name is free again once the process ends, however
// it ends.
class MessageListener {
 public:
  virtual ~MessageListener() = default;
};

// Calls `receive` for each message in the order in which they were sent, from within the event
// loop. If two programs listen under one name, the later one gets the messages, also after the
// earlier one ends. Up to 1000 messages wait for a busy listener (fewer if the system's limit is
// lower); beyond that, sending fails. Null if the system refuses.
std::unique_ptr<MessageListener> ListenForMessages(std::string_view name,
                                                   std::function<void(const IpcMessage&)> receive);

// The answer to a text that one program of ours sends to another one.
enum class IpcAnswer : std::uint8_t { kAccepted, kRefused, kNone, kNobodyListens };

inline constexpr std::size_t kLongestIpcRequest = std::size_t{1} << 20;  // bytes

// Sends the text to the program that listens under that name and waits until it is answered, at
// most for that time. No events run in between. Texts above kLongestIpcRequest
// are refused without being sent.
IpcAnswer SendIpcRequest(std::string_view name, std::string_view text,
                         std::chrono::milliseconds patience);

// Calls `accepts` for each request of this user's programs, from within the event loop, and answers
// with its result. What is too long or incomplete is dropped without a call. Otherwise as
// ListenForMessages.
std::unique_ptr<MessageListener> ListenForRequests(std::string_view name,
                                                   std::function<bool(std::string_view)> accepts);

}  // namespace velumar
