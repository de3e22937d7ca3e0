#include "charthost/view/folder_completer.h"

#include <QDir>
#include <QElapsedTimer>
#include <QLineEdit>

namespace velumar {

FolderCompleter::FolderCompleter(QLineEdit& line) : QObject(&line), line_(line) {
  constexpr int kTypingPauseMilliseconds = 300;
  pause_.setSingleShot(true);
  pause_.setInterval(kTypingPauseMilliseconds);
  connect(&line, &QLineEdit::textEdited, this, &FolderCompleter::Edited);
  connect(&pause_, &QTimer::timeout, this, &FolderCompleter::Start);
  connect(&reading_, &QTimer::timeout, this, &FolderCompleter::ReadOn);
}

void FolderCompleter::Edited(const QString& text) {
  const bool longer = text.size() > last_.size();
  last_ = text;
  pause_.stop();
  reading_.stop();
  if (longer && QDir::isAbsolutePath(text)) pause_.start();
}

void FolderCompleter::Start() {
  const QString typed = QDir::fromNativeSeparators(line_.text());
  const qsizetype separator = typed.lastIndexOf(u'/');
  beginning_ = typed.mid(separator + 1);
  if (separator < 0 || beginning_.isEmpty()) return;
  best_.clear();
  entries_ = std::make_unique<QDirIterator>(typed.left(separator + 1),
                                            QDir::AllEntries | QDir::NoDotAndDotDot);
  reading_.start(0);
}

void FolderCompleter::ReadOn() {
  constexpr int kSliceMilliseconds = 4;
  QElapsedTimer slice;
  slice.start();
  while (slice.elapsed() < kSliceMilliseconds) {
    if (!entries_->hasNext()) {
      reading_.stop();
      return Complete();
    }
    entries_->next();
    const QString name = entries_->fileName();
    if (!name.startsWith(beginning_, Qt::CaseInsensitive)) continue;
    const bool better = best_.isEmpty() || name.compare(best_, Qt::CaseInsensitive) < 0;
    if (better && entries_->fileInfo().isDir()) best_ = name;
  }
}

void FolderCompleter::Complete() {
  const QString typed = line_.text();
  const bool usable = line_.hasFocus() && line_.cursorPosition() == typed.size() &&
                      best_.size() > beginning_.size();
  if (!usable) return;
  const QString added = best_.mid(beginning_.size());
  line_.setText(typed + added);
  line_.setSelection(static_cast<int>(typed.size() + added.size()),
                     static_cast<int>(-added.size()));
}

}  // namespace velumar
