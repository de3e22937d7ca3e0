#pragma once

#include "ledger/ledger.h"
#include "resultchart/chart_scene.h"

namespace velumar {

// What the chart of the rows now in the ledger, or of an archived run, shows. Throws LedgerError.
ChartPoints PointsOfRun(LedgerConnection& connection, int run);

}  // namespace velumar
