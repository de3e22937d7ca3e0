#include <QtWidgets>

#include "resultchart/result_plot.h"
#include "shown_desktop.h"
#include "support/ledger_rows.h"

namespace velumar {
namespace {

// The real widgets and a ledger of two runs; only the dialogs are scripted.
struct ResultViewTest : ShownProgram {
  ResultViewTest() {
    LedgerOpen(ledger, ":memory:");
    LedgerRows{ledger}.TradeTwoRuns();
    desktop.frmResult().Show();
  }
  // The file that the next dialog returns.
  QString Answer(const char* name) {
    const QString file = folder.filePath(QString::fromUtf8(name));
    world.files.answers = {file.toStdString()};
    return file;
  }
  // The output of a program, empty if it isn't installed.
  static QString Printed(const char* command, const QString& file) {
    QProcess process;
    process.startCommand(QString::fromUtf8(command).arg(file));
    process.waitForFinished();
    return QString::fromUtf8(process.readAllStandardOutput());
  }

  QTemporaryDir folder;
  FrmResult& form = desktop.Untouched().frmResult;
};

TEST_F(ResultViewTest, TabsTableAndRunsWorkWithMouseAndKeys) {
  WidgetOf<QTabBar>(form.tabSheets).setCurrentIndex(FrmResult::kOrdersTab);
  auto& orders = WidgetOf<QTableView>(form.lstOrders);
  ASSERT_TRUE(orders.isVisible());
  EXPECT_FALSE(WidgetOf(form.MSChart1).isVisible());
  const auto cell = [&](int row, int column) {
    return orders.model()->index(row, column).data().toString();
  };
  EXPECT_EQ(cell(0, 4), QStringLiteral("Short"));
  QTest::mouseClick(orders.horizontalHeader()->viewport(), Qt::LeftButton, {},
                    QPoint(orders.horizontalHeader()->sectionViewportPosition(6) + 8, 8));
  EXPECT_EQ(cell(0, 6), QStringLiteral("48.00"));
  for (int column = 0; column < orders.model()->columnCount() - 1; ++column) {
    EXPECT_GE(orders.columnWidth(column),
              orders.fontMetrics().horizontalAdvance(cell(0, column)) + 4);
  }
  EXPECT_EQ(orders.horizontalScrollBar()->maximum(), 0) << "all columns are visible";
  orders.selectRow(0);
  QTest::keyClick(&orders, Qt::Key_C, Qt::ControlModifier);
  EXPECT_THAT(world.clipboard.text, HasSubstr("Offset Short\t1\t48.00"));

  auto& runs = WidgetOf<QComboBox>(form.cbxRun);
  for (int i = 0; i < 2; ++i) QTest::keyClick(&runs, Qt::Key_Down);
  EXPECT_EQ(form.lblPortfolio.Text(), "2,004,000");
  EXPECT_EQ(orders.model()->rowCount(), 3);
}

// On a small screen, Tab scrolls to the controls.
TEST_F(ResultViewTest, EveryControlCanBeReachedOnAnyScreen) {
  const FormView& window = Activate(form);
  EXPECT_EQ(window.size().boundedTo(window.screen()->availableSize()), window.size());
  for (Control* control : std::initializer_list<Control*>{&form.lnkScore, &form.Combo1}) {
    const QWidget& widget = WidgetOf(*control);
    for (int i = 0; i < 50 && QApplication::focusWidget() != &widget; ++i) {
      QTest::keyClick(window.windowHandle(), Qt::Key_Tab);
    }
    EXPECT_FALSE(widget.visibleRegion().isEmpty()) << control->Name();
  }
}

TEST_F(ResultViewTest, TheChartIsSavedInEveryFormAsItIsShown) {
  auto& plot = WidgetOf<ResultPlot>(form.MSChart1);
  EXPECT_EQ(plot.Scene().points.values.size(), 3U);
  for (const std::string& ending : form.MSChart1.endings) {
    const QString file = Answer(("it's." + ending).c_str());
    QTest::keyClick(Activate(form).windowHandle(), Qt::Key_S, Qt::AltModifier);
    // A button pressed with its shortcut is released a moment later.
    EXPECT_TRUE(QTest::qWaitFor([&] { return QFileInfo(file).size() > 1000; })) << ending;
    if (ending == "bmp") {
      EXPECT_EQ(QImage(file).size(), (QSizeF(705, 553) * qApp->devicePixelRatio()).toSize());
    }
  }
  EXPECT_THAT(world.boxes.shown, IsEmpty());
}

TEST_F(ResultViewTest, ThePageIsPrintedAsVectorsWithTheChartWhereItWasDragged) {
  Click(*WidgetOf(form.Toolbar1)
             .findChild<QToolButton*>(QStringLiteral("Toolbar1.%1").arg(FrmResult::kPreview)));
  Graph2& preview = desktop.graph2();
  QWidget& picture = WidgetOf(preview.Picture2);
  QTest::mousePress(&picture, Qt::LeftButton, {}, {10, 10});
  QTest::mouseRelease(&picture, Qt::LeftButton, {}, {40, 110});
  EXPECT_EQ(picture.pos(), QPoint(30, 100));
  preview.op1.UserEntry(Graph2::kNoOfCopies, 1);
  const QString page = Answer("page.pdf");
  Click(WidgetOf(preview.cmdPrint));
  EXPECT_EQ(world.boxes.shown.back(), "bbb");
  EXPECT_EQ(WidgetOf<QScrollBar>(preview.HScroll2).value(), 100);

  const QString words = Printed("pdftotext -bbox %1 -", page);
  if (words.isEmpty()) GTEST_SKIP() << "poppler's tools aren't installed";
  EXPECT_EQ(words.count(QStringLiteral("<page width=\"595")), 2) << "two sheets of A4";
  EXPECT_EQ(Printed("pdfimages -list %1", page).count(QLatin1Char('\n')), 2) << "no picture";
  EXPECT_NEAR(
      words.section(QStringLiteral("yMin=\""), 1, 1).section(QLatin1Char('"'), 0, 0).toDouble(),
      150, 15)
      << "the title is twice as far down as at half the size";
  const auto sheet = [&words](int number) {
    return words.section(QStringLiteral("<page"), number, number)
        .section(QStringLiteral("</page>"), 0, 0);
  };
  EXPECT_EQ(sheet(1), sheet(2));
}

}  // namespace
}  // namespace velumar
