#include "platform/ipc.h"

#include <signal.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <thread>

#include "platform/eventually.h"
#include "support/matchers.h"
#include "support/scratch_folder.h"

namespace velumar {

void ProcessEvents();  // of a program without windows, in qt_loop.cpp

namespace {

struct Ipc : testing::Test {
  Ipc() {
    ::setenv("XDG_RUNTIME_DIR", folder.Path().c_str(), 1);
    ProcessEvents();  // starts the event loop
  }
  ~Ipc() override { ::unsetenv("XDG_RUNTIME_DIR"); }

  std::unique_ptr<MessageListener> Listen(std::vector<std::uint32_t>& received) {
    return ListenForMessages(
        "test", [&received](const IpcMessage& message) { received.push_back(message.second); });
  }
  static void WaitFor(const std::vector<std::uint32_t>& received, std::size_t count) {
    EXPECT_TRUE(Eventually([&] {
      ProcessEvents();
      return received.size() >= count;
    }));
  }
  static bool Send(std::uint32_t number) { return SendIpcMessage("test", {.second = number}); }

  ScratchFolder folder;
};

TEST_F(Ipc, MessagesArriveInOrderAtTheLatestListener) {
  std::vector<std::uint32_t> early;
  std::vector<std::uint32_t> late;
  auto first = Listen(early);
  constexpr std::uint32_t kCount = 400;  // while the listener is busy
  std::vector<std::uint32_t> sent;
  for (std::uint32_t i = 0; i < kCount; ++i) {
    sent.push_back(i << 20);
    ASSERT_TRUE(Send(sent.back())) << i;
  }
  WaitFor(early, sent.size());
  auto second = Listen(late);
  EXPECT_FALSE(SendIpcMessage("other", {}));
  EXPECT_TRUE(Send(5));
  WaitFor(late, 1);
  EXPECT_THAT(late, ElementsAre(5));
  EXPECT_EQ(early, sent);
  first.reset();
  EXPECT_TRUE(Send(6)) << "the socket is the later listener's";
  WaitFor(late, 2);
  EXPECT_THAT(late, ElementsAre(5, 6));
  second.reset();
  EXPECT_TRUE(std::filesystem::is_empty(folder.Path())) << "no socket is left";
}

TEST_F(Ipc, AListenerThatIsKilledFreesTheName) {
  std::vector<std::uint32_t> received;
  const pid_t other = ::fork();
  if (other == 0) {
    const auto listener = Listen(received);
    ::kill(::getpid(), SIGKILL);
  }
  ASSERT_EQ(::waitpid(other, nullptr, 0), other);
  EXPECT_FALSE(Send(1));
  const auto next = Listen(received);
  EXPECT_TRUE(Send(2));
  WaitFor(received, 1);
  EXPECT_THAT(received, ElementsAre(2));
}

// A program that is not ours, since ours refuse to send so much.
TEST_F(Ipc, ALongerRequestIsDroppedWithoutBeingRead) {
  std::size_t longest = 0;
  const auto listener = ListenForRequests("requests", [&longest](std::string_view text) {
    longest = std::max(longest, text.size());
    return true;
  });
  sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
  folder.Sub(folder.Names().at(0)).copy(address.sun_path, sizeof address.sun_path - 1);
  std::atomic<bool> sent = false;
  std::thread sender([&] {
    const int connection = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(::connect(connection, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    const std::uint32_t length = 2 * kLongestIpcRequest;
    const std::string text(length, ' ');
    ::send(connection, &length, sizeof length, MSG_NOSIGNAL);
    ::send(connection, text.data(), text.size(), MSG_NOSIGNAL);
    ::close(connection);
    sent = true;
  });
  EXPECT_TRUE(Eventually([&] {
    ProcessEvents();
    return sent.load();
  }));
  sender.join();
  EXPECT_EQ(longest, 0U);
}

TEST_F(Ipc, AListenerThatHangsCountsAsBusyHoweverManyRequestsWait) {
  const auto listener = ListenForRequests("busy", [](std::string_view) { return true; });
  std::chrono::steady_clock::duration longest{};
  constexpr int kMost = 5000;
  for (int i = 0; i < kMost && longest < std::chrono::milliseconds(90); ++i) {
    const auto begin = std::chrono::steady_clock::now();
    ASSERT_EQ(SendIpcRequest("busy", "{}", {}), IpcAnswer::kNone) << i;
    longest = std::max(longest, std::chrono::steady_clock::now() - begin);
  }
}

}  // namespace
}  // namespace velumar
