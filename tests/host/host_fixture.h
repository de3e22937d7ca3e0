#pragma once

#include "host/host_control.h"
#include "platform/virtual_platform.h"
#include "support/matchers.h"
#include "support/recorded_run.h"

namespace velumar {

// The chart program's side of a run of ABC.
struct HostFixture : testing::Test {
  HostFixture() {
    session.HostTitle = "MetaStock";
    session.SimDir = "/data/Simulate\\";
    session.Run.symbol = "ABC";
  }

  SimSession session;
  RecordedRun run;
  VirtualPlatform outside;
  RecordingChart& chart = outside.chart;
  Platform platform = outside.References();
  ChartRegistry registry{outside.registry, outside.boxes};
  TraderFocus trader{outside.chart};
};

}  // namespace velumar
