#pragma once

#include <QDirIterator>
#include <QObject>
#include <QTimer>
#include <memory>

class QLineEdit;

namespace velumar {

// Completes a typed folder inside its line: a list would be a window, and keys that a program types
// blind would go to it. Completion waits for a pause in typing, and a folder is read a little at a
// time, so that keys never wait for it, however many folders it holds.
class FolderCompleter : public QObject {
  Q_OBJECT

 public:
  // The line owns the object.
  explicit FolderCompleter(QLineEdit& line);

 private:
  void Edited(const QString& text);
  void Start();
  void ReadOn();
  void Complete();

  QLineEdit& line_;
  QTimer pause_;
  QTimer reading_;
  QString last_;       // edited text
  QString beginning_;  // of the names in question
  QString best_;       // the first of them in the alphabet so far
  std::unique_ptr<QDirIterator> entries_;
};

}  // namespace velumar
