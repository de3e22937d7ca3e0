#pragma once

#include <optional>
#include <string>
#include <vector>

#include "forms/desktop.h"
#include "platform/platform.h"
#include "trading/trade_ticket.h"

namespace velumar {

// What the controls of the ticket do. It opens for the order that the trader means, and never
// pauses the feed. Enter keeps the plan and closes it, Esc leaves everything as it was.
class TicketWindow {
 public:
  TicketWindow(Desktop& desktop, Platform& platform, TradeTicket& ticket);

  void Open();

 private:
  void TakeFocus();
  void Load();
  void Place();
  void SavePlace();
  void ListOrders();
  void ShowPlan();
  // Writes all texts but the percentage into the boxes.
  void Enter(const TicketTexts& texts);
  void Typed();
  void Keep();
  // True if an order was placed since the orders were listed; then lists them again.
  bool OrderCameBetween();
  TicketTexts Texts();
  const TicketOrder& Chosen();
  FrmTicket& Window() { return desktop_.frmTicket(); }

  Desktop& desktop_;
  Platform& platform_;
  TradeTicket& ticket_;
  std::vector<TicketOrder> orders_;
};

}  // namespace velumar
