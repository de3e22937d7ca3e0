#pragma once

#include <QObject>
#include <filesystem>
#include <optional>

#include "charthost/drawings/drawing_book.h"

namespace velumar {

// What all charts share about drawing: the drawings themselves, and what the next clicks draw.
class DrawingDesk : public QObject {
  Q_OBJECT

 public:
  // `file` keeps the drawings.
  DrawingDesk(std::filesystem::path file, QObject* parent)
      : QObject(parent), book_(std::move(file)) {}

  DrawingList& Of(const SecurityKey& security) { return book_.Of(security); }
  const std::string& Problem() const { return book_.Problem(); }
  // Call after a list has changed.
  void Save(const SecurityKey& security) {
    book_.Save(security);
    emit Changed();
  }

  // What the next clicks draw; without it they select.
  std::optional<DrawingKind> Kind() const { return kind_; }
  void Choose(std::optional<DrawingKind> kind) {
    if (std::exchange(kind_, kind) != kind) emit KindChosen();
  }
  // Of new drawings.
  int Colour() const { return colour_; }
  void SetColour(int colour) { colour_ = colour; }

 signals:
  // Drawings have changed.
  void Changed();
  void KindChosen();

 private:
  DrawingBook book_;
  std::optional<DrawingKind> kind_;
  int colour_ = 4;  // purple, which the first indicators do not have
};

}  // namespace velumar
