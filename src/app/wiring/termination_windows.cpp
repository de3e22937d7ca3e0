#include <QAbstractNativeEventFilter>
#include <QCoreApplication>
#include <utility>

#include "app/wiring/termination.h"
#include "platform/windows/session_end.h"

namespace velumar {

// A log-out asks every window of every program; one answer is enough.
struct Termination::Watch : public QAbstractNativeEventFilter {
  explicit Watch(std::function<void()> request) : on_request(std::move(request)) {
    QCoreApplication::instance()->installNativeEventFilter(this);
  }
  ~Watch() override { QCoreApplication::instance()->removeNativeEventFilter(this); }
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;

  bool nativeEventFilter(const QByteArray&, void* message, qintptr*) override {
    if (IsSessionEnd(message) && !std::exchange(asked, true)) on_request();
    return false;
  }

  std::function<void()> on_request;
  bool asked = false;
};

Termination::Termination(std::function<void()> on_request)
    : watch_(std::make_unique<Watch>(std::move(on_request))) {}

Termination::~Termination() = default;

}  // namespace velumar
