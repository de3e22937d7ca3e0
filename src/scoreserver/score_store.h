#pragma once

#include <string>
#include <vector>

#include "ledger/owned_database.h"
#include "scoreserver/score.h"

namespace velumar {

// The best thousand scores in an SQLite file, so that nobody can fill the disk. Every call can
// throw LedgerError, which names the file.
class ScoreStore {
 public:
  static constexpr int kMaxScores = 1000;

  // Creates the file if it is missing. A file that another program owns, or that contains anything
  // but scores, is refused and not changed.
  explicit ScoreStore(const std::string& file);

  // Returns true once the score is on the disk, or false if it is not among the best thousand. Of
  // equal scores the older ones rank higher.
  bool Add(const Score& score);
  // Best first.
  std::vector<Score> Top(int count);

 private:
  OwnedDatabase database_;
};

}  // namespace velumar
