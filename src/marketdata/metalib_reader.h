#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace velumar {

class IndexCache;

// What the index files tell of one security, with the dates and the count of its data file.
struct SecurityInfo {
  std::string symbol;  // UTF-8
  std::string name;    // UTF-8
  int interval = -1;   // -1: not intraday; else minutes, 0 where nothing tells them
  int fields = 0;
  int file_number = 0;
  int bars = 0;
  std::int32_t first_date = 0;  // of the first and last bar, yyyymmdd, 0 without bars
  std::int32_t last_date = 0;
  // What the index files tell of the same two, for a security whose data file is missing.
  std::int32_t indexed_first_date = 0;
  std::int32_t indexed_last_date = 0;
};

// Reads one market data directory. An object serves one operation and is then dropped. Every
// operation throws MetaLibError; texts in and out are UTF-8, paths may hold "\".
class MetaLibReader {
 public:
  // `cache` keeps what was read of index files between objects; main owns it.
  explicit MetaLibReader(IndexCache& cache);
  ~MetaLibReader();
  MetaLibReader(const MetaLibReader&) = delete;
  MetaLibReader& operator=(const MetaLibReader&) = delete;

  void OpenDirectory(std::string_view path);
  void CloseDirectory();

  int SecurityCount() const;
  // 1: one more security, now current; 0: there is none. The order is MASTER's (EMASTER's where
  // there is no MASTER), then XMASTER's.
  int NextSecurity();
  // Makes the next four valid for the current security. SelectSeries does so too.
  void ReadSecurityHeader();
  const std::string& SecuritySymbol() const;
  const std::string& SecurityName() const;
  int SecurityInterval() const;
  SecurityInfo Security() const;
  void CloseSecurity();

  // Makes the first series current that has exactly this symbol and is not intraday (daily 1,
  // minutes -1) or intraday with these minutes (daily 0).
  void SelectSeries(std::string_view symbol, int daily, int minutes);
  void ReadSeries();

  // Eight parallel arrays of the series that was read, oldest bar first. A file whose bars are out
  // of order reads as the writer would leave it: in order, of bars of one moment the last.
  const std::vector<std::int32_t>& GetDates() const;
  const std::vector<std::int32_t>& GetTimes() const;
  const std::vector<float>& GetOpens() const;
  const std::vector<float>& GetHighs() const;
  const std::vector<float>& GetLows() const;
  const std::vector<float>& GetCloses() const;
  const std::vector<float>& GetVolumes() const;
  const std::vector<float>& GetOpenInterests() const;

  // Cursor on the first bar on or after `date_text` (yyyymmdd); the second argument is always 0.
  void SeekDate(std::string_view date_text, int mode);
  void MoveToStart();
  // Behind the last bar, so that MoveBy(-1) reaches it.
  void MoveToEnd();
  void MoveBy(int bars);
  void ReadBar();
  std::int32_t BarDateAtCursor() const;
  std::int32_t BarTimeAtCursor() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace velumar
