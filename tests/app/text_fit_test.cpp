#include <QLineEdit>
#include <QToolTip>

#include "app/artwork.h"
#include "app/caption_layout.h"
#include "app/fitting_line_edit.h"
#include "app/label_view.h"
#include "app/text_fit.h"
#include "shown_desktop.h"

namespace velumar {
namespace {

class TextFitTest : public ShownDesktop {
 protected:
  TextFitTest() {
    for (Form* form : desktop.All()) {
      if (!form->Loaded()) form->BeLoaded();
      for (Control* control : form->Controls()) {
        if (control->Kind() == ControlKind::kPicture) {
          control->SetSize(form->Width(), form->Height());
        }
      }
      form->Show();
    }
    desktop.form1().Label8.SetText("version 1.0");
  }

  template <typename Check>
  void ForEachLabel(Check check) {
    for (Form* form : desktop.All()) {
      for (Control* control : form->Controls()) {
        if (control->Kind() == ControlKind::kLabel) {
          check(*control, WidgetOf<LabelView>(*control));
        }
      }
    }
  }
};

// The ink of every label lies inside its place and, but for texts that nobody could read at once,
// is the whole text.
TEST_F(TextFitTest, NoLabelIsCut) {
  desktop.form2().Label6.SetText("SET50-FUT 10/18/2007 16:00:00 O:12,345.5 H:12,350 L:12,340");
  desktop.form3().Label6.SetText("( L=999999999 Avg=999,999.25 )  ( S=999999999 Avg= 1,234.5 ) ");
  desktop.form3().lblinfo.SetText("Initial Margin [999,999,999]   Porfolio [-999,999,999]");
  desktop.frmBigScore().lblScore.SetText("-999,999,999");
  desktop.frmBigPrice().lblScore.SetText("O: 123,456.75 H: 123,456.75 L: 123,456.75 C: 123,456.75");
  ForEachLabel([](const Control& label, const LabelView& widget) {
    const FittedText& fitted = widget.Fitted();
    const QRectF ink = QFontMetricsF(fitted.font).tightBoundingRect(fitted.shown);
    const QRect place = LogicalPlace(label);
    EXPECT_FALSE(fitted.shortened) << label.Owner().Name() << " " << label.Text();
    EXPECT_LE(ink.width(), place.width()) << label.Text();
    if (fitted.shown.trimmed().isEmpty()) return;
    const double baseline = Baseline(label, fitted.font, fitted.shown);
    EXPECT_GE(baseline + ink.top(), place.top() - 0.5) << label.Text();
    EXPECT_LE(baseline + ink.bottom(), place.top() + place.height() + 0.5) << label.Text();
    EXPECT_GE(fitted.font.pixelSize(), kSmallestPixelSize) << label.Text();
  });
}

TEST_F(TextFitTest, CaptionsOfAWindowLookAlikeAndStandLevelWithTheirBoxes) {
  Form1& form = desktop.form1();
  const auto& portfolio = WidgetOf<LabelView>(form.Label11).Fitted();
  const auto& margin = WidgetOf<LabelView>(form.Label9).Fitted();
  EXPECT_EQ(portfolio.font.pixelSize(), margin.font.pixelSize());
  const double line = Baseline(form.Label2, margin.font, QStringLiteral("Comm."));
  const double middle = line - QFontMetricsF(margin.font).capHeight() / 2;
  EXPECT_NEAR(middle, WidgetOf<QWidget>(form.txtcomm).geometry().center().y() + 0.5, 1.5);
}

TEST_F(TextFitTest, ATextTooLongForItsLabelShowsItsEndsAndTheRestInTheTooltip) {
  std::string text = "The chart program isn't running: ";
  for (int i = 0; i < 30; ++i) text += "and so on ";
  text += "the end";
  desktop.form2().Label6.SetToolTip("status");
  desktop.form2().Label6.SetText(text);
  const auto& label = WidgetOf<LabelView>(desktop.form2().Label6);
  EXPECT_TRUE(label.Fitted().shortened);
  EXPECT_TRUE(label.Fitted().shown.startsWith(QStringLiteral("The chart")));
  EXPECT_TRUE(label.Fitted().shown.endsWith(QStringLiteral("end")));
  EXPECT_EQ(label.toolTip().toStdString(), "status\n" + text);
  desktop.form2().Label6.SetText("");
  EXPECT_EQ(label.toolTip(), QStringLiteral("status"));
}

TEST_F(TextFitTest, BoxesShowNineDigitsAndTellLongPaths) {
  Form1& form = desktop.form1();
  for (TextBox* box : {&form.txtcomm, &form.txtInitPorfolio, &form.txtContractValue,
                       &form.txtProfitperContract, &desktop.form3().txtContractVol}) {
    box->SetText("999,999,999");
    const auto& line = WidgetOf<FittingLineEdit>(*box);
    EXPECT_FALSE(line.Overflows()) << box->Name();
    EXPECT_LE(line.fontMetrics().ascent(), line.height()) << box->Name();
  }
  const std::string path = "/home/trader/" + std::string(120, 'm') + "/data/";
  form.Text3.SetText(path);
  EXPECT_TRUE(WidgetOf<FittingLineEdit>(form.Text3).Overflows());
  EXPECT_EQ(WidgetOf<QWidget>(form.Text3).toolTip().toStdString(),
            form.Text3.ToolTip() + "\n" + path);
}

// The backdrops carry white, dark blue, blue and light red texts; the colours of the tables stand
// unchanged on the light set, and whatever shade the dark set needs can be read.
TEST_F(TextFitTest, EveryTextCanBeReadOnItsGround) {
  ForEachLabel([this](const Control& label, const LabelView& widget) {
    if (label.DesignLook().backdrop != Backdrop::kNone) return;
    const QColor ground = label.Container() == nullptr
                              ? View(label.Owner()).GroundUnder(widget.geometry())
                              : View(label.Owner()).Look().theme.field;
    const QColor colour = ToQColor(label.ForeColour());
    EXPECT_GE(Contrast(ground, ReadableOn(ground, colour)), 4.4)
        << label.Owner().Name() << " " << label.Text();
    const bool big = label.Owner().Name().rfind("frmBig", 0) == 0;
    if (!big && label.Visible()) {
      EXPECT_EQ(ReadableOn(ground, colour), colour) << label.Owner().Name() << " " << label.Text();
    }
  });
  for (const Colour colour : {kRed, kGreen, kBlue, kDarkBlue, kLightRed, kOrange, kWhite}) {
    for (const Theme& theme : {Theme::Light(), Theme::Dark()}) {
      for (const QColor& ground : {theme.window, theme.field}) {
        EXPECT_GE(Contrast(ground, ReadableOn(ground, ToQColor(colour))), 4.4) << colour;
      }
    }
  }
}

TEST(Artwork, IsThereForEveryPictureInBothSetsAtThePixelsAskedFor) {
  Desktop desktop;
  for (Form* form : desktop.All()) {
    for (const Control* control : form->Controls()) {
      if (control->Kind() != ControlKind::kPicture &&
          control->Kind() != ControlKind::kPictureButton) {
        continue;
      }
      for (const char* set : {"light", "dark"}) {
        for (const QSize& pixels : {QSize(20, 19), QSize(26, 25), QSize(101, 97)}) {
          const QPixmap art =
              ArtPixmap(QString::fromLatin1(set), QString::fromStdString(control->Text()), pixels);
          EXPECT_EQ(art.size(), pixels) << set << " " << control->Text();
        }
      }
    }
  }
  EXPECT_TRUE(ArtPixmap(QStringLiteral("light"), QStringLiteral("nothing"), {9, 9}).isNull());
}

}  // namespace
}  // namespace velumar
