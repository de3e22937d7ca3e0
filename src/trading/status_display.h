#pragma once

#include <string>

#include "forms/desktop.h"
#include "platform/services.h"
#include "session/sim_session.h"

namespace velumar {

// Turns the book and the current bar into the texts of the panel and the big windows. A window that
// isn't loaded is loaded by it, unseen.
class StatusDisplay {
 public:
  StatusDisplay(const SimSession& session, Desktop& desktop, const LocaleInfo& locale)
      : session_(session), desktop_(desktop), locale_(locale) {}

  void ShowStatus();

 private:
  void ShowAccount();
  void ShowScore();
  void ShowBar();
  void ShowMoment(std::size_t bar);
  std::string PriceText() const;

  const SimSession& session_;
  Desktop& desktop_;
  const LocaleInfo& locale_;
};

}  // namespace velumar
