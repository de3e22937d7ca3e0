#include "scored/post_limit.h"

namespace velumar {

bool PostLimit::Allows(const std::string& address, Moment now) {
  if (now - minute_ >= std::chrono::minutes{1}) {
    minute_ = now;
    posts_.clear();
  }
  if (posts_.size() >= kAddresses && !posts_.contains(address)) return false;
  int& posts = posts_[address];
  if (posts >= per_minute_) return false;
  ++posts;
  return true;
}

}  // namespace velumar
