#pragma once

#include <string>
#include <vector>

#include "ledger/sqlite_database.h"
#include "scored/score.h"

namespace velumar {

// The scores in an SQLite file, the best thousand of them: whoever floods the service fills no
// disk. Every call throws LedgerError naming the file.
class ScoreStore {
 public:
  static constexpr int kKept = 1000;

  // The file is made when it is missing.
  explicit ScoreStore(const std::string& file);

  void Add(const Score& score);
  // The best first; of equal ones the older.
  std::vector<Score> Top(int count) const;

 private:
  SqliteDatabase database_;
};

}  // namespace velumar
