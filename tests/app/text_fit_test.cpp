#include <QLineEdit>

#include "app/controls/label_view.h"
#include "app/controls/text_box.h"
#include "app/theme/theme.h"
#include "shown_desktop.h"

namespace velumar {
namespace {

class TextFitTest : public ShownDesktop {
 protected:
  void ExpectReadable(Control& label) {
    const auto& widget = WidgetOf<LabelView>(label);
    const FittedText& fitted = widget.Fitted();
    const QRectF ink = QFontMetricsF(fitted.font).tightBoundingRect(fitted.shown);
    const QRect place = LogicalPlace(label);
    // The lines that change with each bar are elided before they are too small to read at a glance.
    const bool status = label.DesignLook().backdrop == Backdrop::kWhitePaper;
    EXPECT_FALSE(fitted.shortened && !status);
    EXPECT_LE(ink.width(), place.width());
    if (fitted.shown.trimmed().isEmpty()) return;
    const double baseline = Baseline(label, fitted.font, fitted.shown);
    EXPECT_GE(baseline + ink.top(), place.top() - 0.5);
    EXPECT_LE(baseline + ink.bottom(), place.top() + place.height() + 0.5);
    EXPECT_GE(fitted.font.pixelSize(), status ? 10 : kSmallestPixelSize);
    if (label.DesignLook().backdrop != Backdrop::kNone) return;
    const FormContext& context = View(label.Owner()).Context();
    const QColor background = label.Container() == nullptr ? context.BackgroundAt(widget.geometry())
                                                           : context.Look().palette.field;
    const QColor colour = ToQColor(label.ForeColour());
    EXPECT_GE(Contrast(background, ReadableOn(background, colour)), 4.4);
  }
};

TEST_F(TextFitTest, NoTextIsCutOrUnreadableAndNoPictureIsMissing) {
  ShowAll();
  view.SetTheme(Palette::Dark());
  desktop.form2().Label6.SetText("SET50-FUT 10/18/2007 16:00:00 O:12,345.5 H:12,350 L:12,340");
  desktop.form3().Label6.SetText("( L=999999999 Avg=999,999.25 )  ( S=999999999 Avg= 1,234.5 ) ");
  desktop.form3().lblinfo.SetText("Initial Margin [999,999,999]   Porfolio [-999,999,999]");
  desktop.frmBigScore().lblScore.SetText("-999,999,999");
  desktop.frmBigPrice().lblScore.SetText("O: 123,456.75 H: 123,456.75 L: 123,456.75 C: 123,456.75");
  for (Form* form : desktop.All()) {
    for (Control* control : form->Controls()) {
      if (control->Kind() != ControlKind::kPicture) continue;
      control->SetSize(form->Width(), form->Height());
    }
    for (Control* control : form->Controls()) {
      SCOPED_TRACE(form->Name() + "." + control->Name() + ": " + control->Text());
      const ControlKind kind = control->Kind();
      if (kind == ControlKind::kLabel) ExpectReadable(*control);
      if (kind != ControlKind::kPicture && kind != ControlKind::kPictureButton) continue;
      for (const Palette& theme : {Palette::Light(), Palette::Dark()}) {
        EXPECT_FALSE(ArtPixmap(theme, ToQt(control->Text()), QSize(101, 97)).isNull());
      }
    }
  }
}

TEST_F(TextFitTest, TheTooltipHasAllOfATextThatIsTooLong) {
  const std::string text = "The chart program " + std::string(300, 'm') + " the end";
  desktop.form2().Label6.SetToolTip("status");
  desktop.form2().Label6.SetText(text);
  const auto& label = WidgetOf<LabelView>(desktop.form2().Label6);
  EXPECT_TRUE(label.Fitted().shown.startsWith(QStringLiteral("The chart")));
  EXPECT_TRUE(label.Fitted().shown.endsWith(QChar(0x2026)));
  EXPECT_EQ(label.toolTip().toStdString(), "status\n" + text);

  Form1& form = desktop.form1();
  for (TextBox* box : {&form.txtcomm, &form.txtInitPorfolio, &form.txtContractValue,
                       &form.txtProfitperContract, &desktop.form3().txtContractVol}) {
    box->SetText("999,999,999");
    EXPECT_FALSE(WidgetOf<FittingLineEdit>(*box).Overflows()) << box->Name();
  }
  form.Text3.SetText(text);
  EXPECT_TRUE(WidgetOf<FittingLineEdit>(form.Text3).Overflows());
  EXPECT_EQ(WidgetOf(form.Text3).toolTip().toStdString(), form.Text3.ToolTip() + "\n" + text);
}

}  // namespace
}  // namespace velumar
