#pragma once

#include <cstdint>
#include <functional>

#include "progress/random_source.h"

namespace velumar {

// How often something random is repeated. The results depend on count and seed only.
struct RoundOptions {
  int count = 10'000;
  std::uint64_t seed = 1;
  int threads = 0;  // this one included; 0: one per core
  // Called from time to time on the calling thread with the share that is done. May throw to
  // cancel: no further block begins, and the exception reaches the caller.
  std::function<void(double)> progress = {};
};

// Rounds `first` to `end` - 1, with random numbers of their own.
using RoundBlock = std::function<void(int first, int end, RandomSource& random)>;

// Runs blocks of rounds on several threads, and returns when all are done. Blocks must not write to
// the same memory. An exception of a block ends the others and reaches the caller.
//
// The only place of the program that computes on more than one thread: ten thousand rounds over a
// hundred thousand trades would keep the windows waiting.
void RunRounds(const RoundOptions& options, const RoundBlock& block);

}  // namespace velumar
