#include "e2e/trader_fixture.h"

#include "platform/qt/settings_file.h"

namespace velumar {

void TraderFixture::SetUp() {
  if (std::getenv("VELUMAR_E2E") == nullptr) {
    GTEST_SKIP() << "takes over mouse and keyboard: scripts/test runs it on a virtual display";
  }
  IndexCache cache;
  StoreSecurity(data, {"ABC", "A made series", -1}, DailyBars(300), cache);
  const int date = MadeDate(kStartBar);
  FileSettings settings(scratch.Sub("settings"));
  settings.Save("LastPath", data);
  settings.Save("Refresh", "1");
  settings.Save("SelectDate", std::to_string(date / 100 % 100) + "/" + std::to_string(date % 100) +
                                  "/" + std::to_string(date / 10000));
  StartProgram();
}

}  // namespace velumar
