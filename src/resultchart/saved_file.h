#pragma once

#include <QString>
#include <functional>

class QIODevice;

namespace velumar {

// Writes a file that appears whole or not at all; an older one of that name stays until then.
// Throws std::runtime_error that names the file, also for a runtime_error that `write` throws.
void SaveWhole(const QString& file, const std::function<void(QIODevice& device)>& write);

// Throws std::runtime_error with the file's name before `why`.
[[noreturn]] void FailToSave(const QString& file, const QString& why);

}  // namespace velumar
