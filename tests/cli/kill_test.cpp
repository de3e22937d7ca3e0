#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <nlohmann/json.hpp>
#include <random>

#include "ledger/ledger.h"
#include "support/scratch.h"

namespace velumar {
namespace {

// velumar-cli replay, connected by pipes.
class Replay {
 public:
  Replay(const std::string& data, const std::string& store, const std::string& ledger) {
    int in[2];
    int out[2];
    if (pipe(in) != 0 || pipe(out) != 0) return;
    process_ = fork();
    if (process_ == 0) {
      dup2(in[0], STDIN_FILENO);
      dup2(out[1], STDOUT_FILENO);
      for (const int end : {in[0], in[1], out[0], out[1]}) close(end);
      execl(VELUMAR_CLI_PROGRAM, VELUMAR_CLI_PROGRAM, "replay", data.c_str(), "ABC", "D",
            "20000201", "--store", store.c_str(), "--ledger", ledger.c_str(), nullptr);
      _exit(127);
    }
    close(in[0]);
    close(out[1]);
    to_ = fdopen(in[1], "w");
    from_ = fdopen(out[0], "r");
  }
  ~Replay() {
    Kill();
    if (to_ != nullptr) fclose(to_);
    if (from_ != nullptr) fclose(from_);
  }
  Replay(const Replay&) = delete;
  Replay& operator=(const Replay&) = delete;

  void Send(const std::string& command) {
    fputs((command + "\n").c_str(), to_);
    fflush(to_);
  }
  // The next answer; null once the program has ended.
  nlohmann::json Receive() {
    std::string line;
    for (int c = fgetc(from_); c != EOF; c = fgetc(from_)) {
      if (c == '\n') return nlohmann::json::parse(line);
      line += static_cast<char>(c);
    }
    return nullptr;  // an incomplete answer does not count
  }
  void Kill() {
    if (process_ <= 0) return;
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
    process_ = 0;
  }

 private:
  pid_t process_ = -1;
  FILE* to_ = nullptr;
  FILE* from_ = nullptr;
};

TEST(Kill, LeavesEveryAnsweredOrderInTheLedger) {
  signal(SIGPIPE, SIG_IGN);
  const ScratchFolder scratch;
  const std::string data = scratch.Sub("data");
  const std::string file = scratch.Sub("Portfolio.mdb");
  IndexCache cache;
  StoreSecurity(data, {"ABC", "Abc", -1}, DailyBars(100), cache);
  std::mt19937_64 random(7);
  int orders = 0;
  for (int round = 0; orders < 200; ++round) {
    ASSERT_LT(round, 200) << "too few orders";
    Replay replay(data, scratch.Sub("store"), file);
    ASSERT_FALSE(replay.Receive().is_null()) << "the run starts";
    std::vector<nlohmann::json> answered;
    const int before_kill = static_cast<int>(random() % 24);
    for (int i = 0; i < before_kill; ++i) {
      replay.Send(i % 3 == 2 ? "offset-long 1" : "long 1");
      const nlohmann::json answer = replay.Receive();
      ASSERT_EQ(answer["result"], "done") << answer;
      answered.push_back(answer["row"]);
    }
    replay.Send("long 1");  // may or may not be placed before the kill
    usleep(static_cast<useconds_t>(random() % 6000));
    replay.Kill();
    orders += before_kill;

    LedgerConnection ledger{[](std::string_view date) { return std::string(date); }};
    LedgerOpenToRead(ledger, file);
    const auto rows =
        LedgerQuery(ledger, "select Position, LAccum, Portfolio From MyPortfolio").rows;
    ASSERT_GE(rows.size(), answered.size());
    ASSERT_LE(rows.size(), answered.size() + 1);
    for (std::size_t i = 0; i < answered.size(); ++i) {
      EXPECT_EQ(std::get<std::string>(rows[i][0]), answered[i]["Position"]);
      EXPECT_EQ(std::get<double>(rows[i][1]), std::stod(answered[i]["LAccum"].get<std::string>()));
      EXPECT_EQ(std::get<double>(rows[i][2]),
                std::stod(answered[i]["Portfolio"].get<std::string>()));
    }
    EXPECT_EQ(std::get<std::string>(LedgerQuery(ledger, "PRAGMA integrity_check").rows[0][0]),
              "ok");
  }
}

}  // namespace
}  // namespace velumar
