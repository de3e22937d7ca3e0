#pragma once

#include <QString>
#include <QStringList>
#include <functional>

class QIODevice;

namespace velumar {

// Writes a file that appears whole or not at all; an older one of that name stays until then.
// Throws std::runtime_error that names the file and the reason, also for a runtime_error of
// `write`.
void SaveWhole(const QString& file, const std::function<void(QIODevice& device)>& write);

// Throws std::runtime_error with the file's name before `why`.
[[noreturn]] void FailToSave(const QString& file, const QString& why);

// The ending of the file's name, in small letters; throws as FailToSave for one that isn't among
// `endings`: "r.txt: a report is saved as .pdf".
QString RequireEnding(const QString& file, const QStringList& endings, const QString& what);

}  // namespace velumar
