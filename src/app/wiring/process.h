#pragma once

#include <QObject>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace velumar {

// Chooses the window system of this process; call it before the application object is created.
// Returns a sentence for the user if there is none that Velumar can work with.
std::optional<std::string> ChooseDisplay();

// Reports why the program ends before it has shown a window: on standard error, or in a message box
// of the system if there is no standard error.
void ReportStartFailure(const std::string& why);

// Calls `on_request` when the system asks this process to end (Ctrl+C, a log-out, a kill), until
// the result is deleted. The call comes from the event loop, also during a wait. Only one watch may
// exist at a time.
std::unique_ptr<QObject> WatchForTermination(std::function<void()> on_request);

}  // namespace velumar
