#pragma once

#include <string>

#include "marketdata/index_cache.h"
#include "platform/virtual_platform.h"
#include "session/sim_session.h"
#include "session/working_store.h"
#include "support/matchers.h"
#include "support/recorded_run.h"
#include "support/scratch.h"

namespace velumar {

// The replay's parts over one data directory with the daily series ABC, without windows.
struct SessionFixture : testing::Test {
  void Store(const std::string& symbol, const std::vector<Bar>& bars, int interval = -1) {
    StoreSecurity(data, {symbol, symbol + " name", interval}, bars, cache);
  }

  // The store as a run finds it before its series is written: index files and no data.
  void CopyIndexes() {
    std::filesystem::create_directories(store);
    for (const char* name : {"MASTER", "EMASTER", "XMASTER"}) {
      const std::filesystem::path from = std::filesystem::path(data) / name;
      if (!std::filesystem::exists(from)) continue;
      // Some systems' libraries cannot overwrite a file.
      std::filesystem::remove(std::filesystem::path(store) / name);
      std::filesystem::copy_file(from, std::filesystem::path(store) / name);
    }
  }

  void Choose(const std::string& symbol, const std::string& interval, int date = 20000101) {
    session.DataDir = data;
    session.Run = {data, symbol, interval, date};
    source.SetKey({});
    session.SimDir = store;
  }

  std::vector<Bar> StoreBars() {
    const std::string& interval = session.Run.interval;
    return ReadBars(store, session.Run.symbol, interval == "D" ? -1 : std::stoi(interval));
  }

  ScratchFolder scratch;
  std::string data = scratch.Sub("data");
  std::string store = scratch.Sub("data") + "/Simulate";
  IndexCache cache;
  SimSession session;
  RecordedRun run;
  VirtualPlatform outside;
  Platform platform = outside.References();
  RunSource source{session, cache};
  WorkingStore working_store{session, source, run, outside.boxes, cache};
};

}  // namespace velumar
