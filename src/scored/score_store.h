#pragma once

#include <string>
#include <vector>

#include "ledger/kept_database.h"
#include "scored/score.h"

namespace velumar {

// The scores in an SQLite file, the best thousand of them: whoever floods the service fills no
// disk. Every call throws LedgerError naming the file.
class ScoreStore {
 public:
  static constexpr int kKept = 1000;

  // The file is made when it is missing. One that another program keeps, or that holds anything
  // but scores, is refused and stays as it is.
  explicit ScoreStore(const std::string& file);

  // Returns true once the score is on the disk, and false if it isn't among the best thousand. Of
  // equal scores the older ones are better.
  bool Add(const Score& score);
  // The best first.
  std::vector<Score> Top(int count);

 private:
  KeptDatabase database_;
};

}  // namespace velumar
