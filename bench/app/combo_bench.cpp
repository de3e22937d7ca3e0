#include <benchmark/benchmark.h>

#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>

#include "app/windows/desktop_view.h"

namespace velumar {

namespace {

std::vector<ComboBox::Row> Securities(std::int64_t count) {
  std::vector<ComboBox::Row> rows;
  for (int i = 0; i < count; ++i) {
    rows.push_back({"SYM" + std::to_string(100000 + i), i, "Company " + std::to_string(i)});
  }
  return rows;
}

// The setup window with that many securities in its list.
class SetupWindow {
 public:
  explicit SetupWindow(std::int64_t securities) {
    ApplyTheme(Palette::Light());
    desktop_.form1().Show();
    desktop_.form1().Combo1.SetRows(Securities(securities));
    QApplication::processEvents();
  }
  Form1& Model() { return desktop_.form1(); }
  QComboBox& List() {
    return *view_.Find(Model())->findChild<QComboBox*>(QStringLiteral("Combo1"));
  }

 private:
  Desktop desktop_;
  DesktopView view_{desktop_,
                    {Palette::Light(), Typefaces::Installed(), QStringLiteral("dd/MM/yyyy")},
                    [](const std::string&) {}};
};

void FillList(benchmark::State& state) {
  SetupWindow window(0);
  for (auto _ : state) {
    window.Model().Combo1.SetRows(Securities(state.range(0)));
    QApplication::processEvents();
  }
}

void OpenList(benchmark::State& state) {
  SetupWindow window(state.range(0));
  for (auto _ : state) {
    window.List().showPopup();
    QApplication::processEvents();
    window.List().hidePopup();
    QApplication::processEvents();
  }
}

// From a key typed into the line until the matches are drawn.
void TypeAKey(benchmark::State& state) {
  SetupWindow window(state.range(0));
  QLineEdit& line = *window.List().lineEdit();
  line.setFocus();
  const QString text = QStringLiteral("COMPANY 5");
  qsizetype next = 0;
  for (auto _ : state) {
    if (next == text.size()) {
      next = 0;
      line.clear();
    }
    const QString letter = text.mid(next++, 1);
    QKeyEvent press(QEvent::KeyPress, letter[0].unicode(), Qt::NoModifier, letter);
    QApplication::sendEvent(&line, &press);
    QApplication::processEvents();
  }
}

BENCHMARK(FillList)->Arg(600)->Arg(6000)->Arg(60000)->Unit(benchmark::kMillisecond);
BENCHMARK(OpenList)->Arg(600)->Arg(6000)->Arg(60000)->Unit(benchmark::kMillisecond);
BENCHMARK(TypeAKey)->Arg(600)->Arg(6000)->Arg(60000)->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace velumar
