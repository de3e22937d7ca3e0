#pragma once

namespace velumar {

// Counts up for as long as it lives: how often something is going on, also where it ends by an
// exception.
class Counted {
 public:
  explicit Counted(int& count) : count_(count) { ++count_; }
  ~Counted() { --count_; }
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;

 private:
  int& count_;
};

}  // namespace velumar
