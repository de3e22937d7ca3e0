#pragma once

#include <QObject>
#include <QPointer>
#include <QThreadPool>
#include <filesystem>
#include <string>

namespace velumar {

class ChartPane;

// Saves pictures of charts for the journal. An order waits for the answer to its request, so the
// picture is painted after it, and written by a thread of its own, which the destructor waits for.
class JournalPictures : public QObject {
  Q_OBJECT

 public:
  JournalPictures();
  ~JournalPictures() override;

  // Takes a picture of the chart once events run. Returns false for a path that is none of a
  // journal's picture. A file of that name that this program hasn't written stays as it is.
  bool Take(ChartPane& chart, const std::string& file);
  // Takes the picture that is still to be taken. Call it before anything changes the charts.
  void TakeWaiting();

 private:
  QPointer<ChartPane> waiting_;
  std::filesystem::path file_;
  QThreadPool writer_;
};

}  // namespace velumar
