#include <gmock/gmock.h>

#include <QAbstractItemView>
#include <QComboBox>
#include <QCompleter>
#include <QLineEdit>

#include "shown_desktop.h"

namespace velumar {
namespace {

using ::testing::ElementsAre;

class ComboBoxTest : public ShownDesktop {
 protected:
  ComboBoxTest() {
    form.Show();
    form.Combo1.on_click = [this] { events.push_back("click " + Chosen()); };
    form.Combo1.on_key_up = [this](int code) {
      events.push_back("key " + std::to_string(code) + " " + form.Combo1.Text());
    };
  }

  std::string Chosen() const {
    return form.Combo1.Text() + " " + std::to_string(form.Combo1.Index());
  }

  Form1& form = desktop.form1();
  std::vector<std::string> events;
};

TEST_F(ComboBoxTest, AChoiceIsARowEvenAmongEqualOnes) {
  form.Combo1.SetRows({{"PTT", 0}, {"PTT", 1}, {"AAPL", 2}});
  form.Combo1.SetIndex(1);  // sorted: AAPL, PTT, PTT
  events.clear();
  auto& box = WidgetOf<QComboBox>(form.Combo1);
  EXPECT_EQ(box.currentText(), QStringLiteral("PTT"));
  QTest::keyClick(&box, Qt::Key_Down);
  EXPECT_THAT(events, ElementsAre("click PTT 2", "key 40 PTT"));
}

TEST_F(ComboBoxTest, ATypedTextStaysTyped) {
  form.Combo1.SetRows({{"AAPL", 0}, {"PTT", 1}});
  form.Combo1.SetIndex(0);
  events.clear();
  auto& line = *WidgetOf<QComboBox>(form.Combo1).lineEdit();
  line.setFocus();
  line.selectAll();
  QTest::keyClicks(&line, QStringLiteral("PTT"));
  QTest::keyClick(&line, Qt::Key_Return);
  WidgetOf<QLineEdit>(form.txtVAT).setFocus();
  EXPECT_EQ(Chosen(), "PTT -1");
  EXPECT_THAT(events, ElementsAre("key 80 P", "key 84 PT", "key 84 PTT", "key 13 PTT"));
}

TEST_F(ComboBoxTest, ATypedTextOffersSymbolsAndNames) {
  form.Combo1.SetRows({{"AAPL", 0, "Orchard Fruits"},
                       {"FRU", 1, "Northern Rail"},
                       {"PTT", 2, "Grand Fruit Trading"},
                       {"PTT", 3, "Grand Fruit Trading"}});
  auto& box = WidgetOf<QComboBox>(form.Combo1);
  auto& line = *box.lineEdit();
  line.setFocus();
  line.selectAll();
  QTest::keyClicks(&line, QStringLiteral("fru"));
  ASSERT_NE(line.completer(), nullptr);
  QAbstractItemView& offer = *line.completer()->popup();
  ASSERT_TRUE(offer.isVisible());
  QStringList offered;
  for (int i = 0; i < offer.model()->rowCount(); ++i) {
    offered.push_back(offer.model()->index(i, 0).data().toString());
  }
  EXPECT_EQ(offered.join(QLatin1Char(' ')), QStringLiteral("FRU AAPL PTT PTT"));
  for (int i = 0; i < 3; ++i) QTest::keyClick(&offer, Qt::Key_Down);
  QTest::keyClick(&offer, Qt::Key_Escape);
  QApplication::processEvents();
  EXPECT_EQ(line.text(), QStringLiteral("fru")) << "an offer that wasn't taken disappears";
  QTest::keyClicks(&line, QStringLiteral("i"));
  events.clear();
  for (int i = 0; i < 3; ++i) QTest::keyClick(&offer, Qt::Key_Down);
  QTest::keyClick(&offer, Qt::Key_Return);
  QApplication::processEvents();
  EXPECT_EQ(Chosen(), "PTT 3");
  EXPECT_EQ(line.text(), QStringLiteral("PTT"));
  EXPECT_THAT(events, testing::Contains("click PTT 3"));
}

TEST_F(ComboBoxTest, AChoiceMayReplaceListsAndTheWheelNeedsTheFocus) {
  form.Combo1.on_click = [this] {
    form.cbxPeriod.Clear();
    form.cbxPeriod.SetText("D");
  };
  form.Combo1.SetRows({{"AAPL", 0}, {"PTT", 1}});
  form.Combo1.UserChoose(1);
  auto& period = WidgetOf<QComboBox>(form.cbxPeriod);
  EXPECT_EQ(period.count(), 0);
  EXPECT_EQ(period.currentText(), QStringLiteral("D"));
  auto& box = WidgetOf<QComboBox>(form.Combo1);
  EXPECT_EQ(box.currentIndex(), 1);
  QWheelEvent up(QPointF(5, 5), box.mapToGlobal(QPointF(5, 5)), {}, QPoint(0, 120), Qt::NoButton,
                 Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&box, &up);
  EXPECT_EQ(form.Combo1.Index(), 1);
  int double_clicks = 0;
  desktop.form3().Combo2.on_double_click = [&] { ++double_clicks; };
  desktop.form3().Show();
  QTest::mouseDClick(WidgetOf<QComboBox>(desktop.form3().Combo2).lineEdit(), Qt::LeftButton);
  EXPECT_EQ(double_clicks, 1);
}

}  // namespace
}  // namespace velumar
