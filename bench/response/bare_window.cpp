// bare_window: a window that covers the screen, as the chart program does, fills itself with
// another colour at each key and prints a line afterwards; Escape ends it. No chart can be faster.

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QWidget>
#include <cstdio>

namespace {

class BareWindow : public QWidget {
 public:
  BareWindow() {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setWindowTitle(QStringLiteral("Bare window"));
  }

 protected:
  void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), colour_); }
  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() == Qt::Key_Escape) {
      close();
      return;
    }
    colour_ = colour_ == Qt::white ? Qt::lightGray : Qt::white;
    repaint();
    std::puts("repainted");
    std::fflush(stdout);
  }

 private:
  Qt::GlobalColor colour_ = Qt::white;
};

}  // namespace

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  BareWindow window;
  window.showMaximized();
  return QApplication::exec();
}
