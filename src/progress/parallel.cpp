#include "progress/parallel.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace velumar {

namespace {

// Fixed, since each block has random numbers of its own.
constexpr int kRoundsInBlock = 256;

class BlockQueue {
 public:
  BlockQueue(const RoundOptions& options, const RoundBlock& block)
      : options_(options),
        block_(block),
        blocks_((options.count + kRoundsInBlock - 1) / kRoundsInBlock) {}

  int Blocks() const { return blocks_; }

  // Takes blocks until there are none left.
  void Work(bool on_calling_thread) {
    try {
      for (int i = next_++; i < blocks_ && !stopped_; i = next_++) {
        RandomSource random(options_.seed, static_cast<std::uint64_t>(i));
        const int first = i * kRoundsInBlock;
        block_(first, std::min(first + kRoundsInBlock, options_.count), random);
        ++done_;
        if (on_calling_thread && options_.progress) {
          options_.progress(static_cast<double>(done_) / blocks_);
        }
      }
    } catch (...) {
      stopped_ = true;
      const std::lock_guard lock(guard_);
      if (!failure_) failure_ = std::current_exception();
    }
  }

  // After all threads have ended.
  void RethrowFailure() const {
    if (failure_) std::rethrow_exception(failure_);
  }

 private:
  const RoundOptions& options_;
  const RoundBlock& block_;
  const int blocks_;
  std::atomic<int> next_ = 0;
  std::atomic<int> done_ = 0;
  std::atomic<bool> stopped_ = false;
  std::mutex guard_;
  std::exception_ptr failure_;
};

}  // namespace

void RunRounds(const RoundOptions& options, const RoundBlock& block) {
  BlockQueue queue(options, block);
  const int cores = static_cast<int>(std::thread::hardware_concurrency());
  const int threads =
      std::min(options.threads > 0 ? options.threads : std::max(cores, 1), queue.Blocks());
  {
    std::vector<std::jthread> others;
    try {
      for (int i = 1; i < threads; ++i) others.emplace_back([&queue] { queue.Work(false); });
    } catch (const std::system_error&) {
      // The system has no thread left: fewer do the same.
    }
    queue.Work(true);
  }
  queue.RethrowFailure();
}

}  // namespace velumar
