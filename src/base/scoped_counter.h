#pragma once

namespace velumar {

// Increments a count for its own lifetime, so that the count says how many such scopes are active,
// also after an exception.
class ScopedCounter {
 public:
  explicit ScopedCounter(int& count) : count_(count) { ++count_; }
  ~ScopedCounter() { --count_; }
  ScopedCounter(const ScopedCounter&) = delete;
  ScopedCounter& operator=(const ScopedCounter&) = delete;

 private:
  int& count_;
};

}  // namespace velumar
