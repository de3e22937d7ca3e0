#include "app/windows/form_view.h"

#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QGuiApplication>
#include <QImage>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QUrl>
#include <QWindow>
#include <algorithm>
#include <chrono>
#include <exception>
#include <iterator>
#include <utility>

#include "app/theme/artwork.h"
#include "app/windows/native_form.h"

namespace velumar {

namespace {

using std::chrono_literals::operator""ms;

constexpr auto kSettlingTime = 300ms;

// The logic counts from the corner of the primary screen.
QPoint ScreenOrigin() { return QGuiApplication::primaryScreen()->geometry().topLeft(); }

bool TakesInput(const Form& form) {
  const auto& controls = form.Controls();
  return std::any_of(controls.begin(), controls.end(), [](const Control* control) {
    return control->Kind() != ControlKind::kLabel && control->Kind() != ControlKind::kPicture;
  });
}

// A window with something to press is an ordinary window, which other programs and the taskbar can
// give the focus to. One that only shows a number never takes the focus from the chart.
Qt::WindowFlags FlagsFor(const Form& form) {
  Qt::WindowFlags flags = Qt::FramelessWindowHint;
  if (form.Bordered()) {
    flags = Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint;
    flags |= Qt::Dialog;
    if (form.Topmost()) flags |= Qt::WindowStaysOnTopHint;
    return flags;
  }
  flags |= TakesInput(form) ? Qt::Window : Qt::Tool | Qt::WindowDoesNotAcceptFocus;
  if (form.Topmost()) flags |= Qt::WindowStaysOnTopHint;
  return flags;
}

}  // namespace

FormView::FormView(Form& form, const Appearance& look, ErrorReport report)
    : form_(form), look_(look), report_(std::move(report)) {
  setObjectName(ToQString(form.Name()));
  setAttribute(Qt::WA_TranslucentBackground, !form.Bordered() && WindowsMayBlend());
  setAttribute(Qt::WA_ShowWithoutActivating, !TakesInput(form));
  MakeViews();
  for (const auto& [control, view] : views_) view->Update();
  OrderTabs();
  setAcceptDrops(true);
  Update();
}

// As the table has them, but whoever opens a window begins at its first box and not at the picture
// buttons of its head.
void FormView::OrderTabs() {
  const std::vector<Control*>& controls = form_.Controls();
  const auto picture = [](const Control* control) {
    return control->Kind() == ControlKind::kPictureButton;
  };
  const auto first = std::find_if(controls.begin(), controls.end(), [&](const Control* control) {
    return views_.at(control)->Widget().focusPolicy() != Qt::NoFocus && !picture(control);
  });
  std::vector<Control*> order(first, controls.end());
  std::copy_if(controls.begin(), first, std::back_inserter(order), picture);
  for (std::size_t i = 1; i < order.size(); ++i) {
    setTabOrder(&views_.at(order[i - 1])->Widget(), &views_.at(order[i])->Widget());
  }
  if (first != controls.end()) views_.at(*first)->Widget().setFocus();
}

// A container clips its controls. A menu bar is above all else and doesn't scroll.
void FormView::MakeViews() {
  QWidget& inside = form_.Bordered() ? MakeScrolledInside() : *this;
  for (Control* control : form_.Controls()) {
    const Control* container = control->Container();
    const bool menu = control->Kind() == ControlKind::kMenu;
    QWidget& ground = menu ? *this : inside;
    QWidget& parent = container == nullptr ? ground : views_.at(container)->Widget();
    views_[control] = MakeControlView(*this, parent, *control);
    if (menu) menu_bar_ = &views_[control]->Widget();
  }
}

// A window may be larger than the screen, above all at 200 %. The Tab key scrolls to its controls.
QWidget& FormView::MakeScrolledInside() {
  scroll_ = new QScrollArea(this);
  scroll_->setFrameShape(QFrame::NoFrame);
  scroll_->setFocusPolicy(Qt::NoFocus);
  auto* inside = new QWidget;
  inside->setFixedSize(LogicalPixels(form_.Width()), LogicalPixels(form_.Height()));
  scroll_->setWidget(inside);
  // Both leave the window's own background visible.
  scroll_->viewport()->setAutoFillBackground(false);
  inside->setAutoFillBackground(false);
  return *inside;
}

void FormView::FitSize() {
  const int menu_height = menu_bar_ == nullptr ? 0 : menu_bar_->sizeHint().height();
  const QSize whole(LogicalPixels(form_.Width()), LogicalPixels(form_.Height()) + menu_height);
  if (scroll_ == nullptr) return setFixedSize(whole);
  const QSize border(16, 40);  // at most, with the title bar
  const QSize room = screen()->availableSize() - border;
  // A bar takes its room from the other direction.
  QSize wanted = whole;
  if (whole.height() > room.height())
    wanted += {scroll_->verticalScrollBar()->sizeHint().width(), 0};
  if (whole.width() > room.width())
    wanted += {0, scroll_->horizontalScrollBar()->sizeHint().height()};
  setFixedSize(wanted.boundedTo(room));
  scroll_->setGeometry(0, menu_height, width(), height() - menu_height);
  if (menu_bar_ != nullptr) menu_bar_->setGeometry(0, 0, width(), menu_height);
}

void FormView::Update() {
  if (retired_) return;
  // A number can't have the focus, so it must not be found where the focus is given by title.
  const std::string& title = TakesInput(form_) ? form_.Caption() : form_.Name();
  setWindowTitle(title.empty() ? QStringLiteral(" ") : ToQString(title));
  FitSize();
  UpdateFlags();
  UpdatePlace();
  UpdateShape();
  UpdateVisible();
}

void FormView::UpdateControl(Control& control) {
  const auto view = views_.find(&control);
  if (!retired_ && view != views_.end()) view->second->Update();
}

void FormView::Redress() {
  if (retired_) return;
  for (const auto& [control, view] : views_) view->Update();
  update();
}

void FormView::UpdateFlags() {
  const Qt::WindowFlags flags = FlagsFor(form_);
  if (windowFlags() != flags) setWindowFlags(flags);
}

void FormView::UpdatePlace() {
  if (following_) return;
  const QPoint place =
      ScreenOrigin() + QPoint(LogicalPixels(form_.Left()), LogicalPixels(form_.Top()));
  if (place == wanted_ && testAttribute(Qt::WA_Moved)) return;
  wanted_ = place;
  dragging_ = false;
  settling_ = QDeadlineTimer(kSettlingTime);
  move(place);
}

void FormView::UpdateShape() {
  SetAlpha(*this, form_.Opacity());
  if (form_.Bordered()) return;
  const QSize corners(form_.CornerWidth(), form_.CornerHeight());
  const bool appears = form_.Visible() && !isVisible();
  if (corners == corners_ && !appears) return;
  corners_ = corners;
  update();
  blended_ = SoftCornersShow();
  if (blended_) {
    clearMask();
  } else {
    CutCorners(*this, corners_);
  }
}

// Another screen may have another size or scale, and corners are cut in the pixels of the screen.
void FormView::FollowScreen() {
  if (retired_) return;
  FitSize();
  if (!blended_ && !form_.Bordered()) CutCorners(*this, corners_);
}

void FormView::showEvent(QShowEvent* event) {
  constexpr auto kOnceBehindAll = Qt::ConnectionType(Qt::QueuedConnection | Qt::UniqueConnection);
  connect(windowHandle(), &QWindow::screenChanged, this, &FormView::FollowScreen, kOnceBehindAll);
  QWidget::showEvent(event);
}

void FormView::UpdateVisible() {
  if (form_.Visible() == isVisible()) return;
  settling_ = QDeadlineTimer(kSettlingTime);
  setVisible(form_.Visible());
  if (form_.Visible() && form_.Topmost()) KeepOnTop(*this);
}

void FormView::ComeUp() {
  if (isMinimized()) setWindowState(windowState() & ~Qt::WindowMinimized);
  raise();
}

void FormView::Retire() {
  retired_ = true;
  hide();
  if (handlers_on_stack_ == 0) deleteLater();
}

void FormView::Deliver(const std::function<void()>& event) {
  if (retired_) return;
  ++handlers_on_stack_;
  try {
    event();
  } catch (const std::exception& error) {
    report_(error.what());
  }
  if (--handlers_on_stack_ == 0 && retired_) deleteLater();
}

QColor FormView::GroundUnder(const QRect& place) const {
  QColor ground = look_.theme.window;
  for (const Control* control : form_.Controls()) {
    const QRect whole = LogicalPlace(*control);
    if (control->Kind() == ControlKind::kFrame && whole.contains(place)) ground = look_.theme.field;
    if (control->Kind() != ControlKind::kPicture || !control->Visible() ||
        !whole.intersects(place)) {
      continue;
    }
    const QPixmap art = ArtPixmap(look_.theme.ArtSet(), ToQString(control->Text()), whole.size());
    if (art.isNull()) continue;
    const QImage part = art.copy(place.intersected(whole).translated(-whole.topLeft())).toImage();
    ground = part.scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).pixelColor(0, 0);
  }
  return ground;
}

QPainterPath FormView::Outline() const {
  QPainterPath outline;
  outline.addRoundedRect(QRectF(rect()).adjusted(.5, .5, -.5, -.5), form_.CornerWidth() / 2.0,
                         form_.CornerHeight() / 2.0);
  return outline;
}

void FormView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  if (form_.Bordered()) return painter.fillRect(rect(), look_.theme.window);
  // What is left between the outline and a mask of whole pixels.
  if (!blended_) painter.fillRect(rect(), look_.theme.edge);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(look_.theme.edge);
  painter.setBrush(look_.theme.window);
  painter.drawPath(Outline());
}

void FormView::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Escape || !form_.on_escape) {
    QWidget::keyPressEvent(event);
    return;
  }
  Deliver([this] {
    if (const auto escape = form_.on_escape) escape();
  });
}

void FormView::mousePressEvent(QMouseEvent*) {
  Deliver([this] { form_.UserPress(); });
}

void FormView::StartDrag() {
  const Qt::MouseButtons held = QGuiApplication::mouseButtons();
  if (!isVisible() || held == Qt::NoButton) return;
  dragging_ = true;
  // Window systems move windows by the left button alone.
  if (held == Qt::LeftButton && MoveWithMouse(*this)) return;
  grip_ = QCursor::pos() - pos();
  grabMouse();
}

void FormView::mouseMoveEvent(QMouseEvent* event) {
  if (mouseGrabber() == this) move(event->globalPosition().toPoint() - grip_);
}

void FormView::mouseReleaseEvent(QMouseEvent*) {
  if (mouseGrabber() == this) releaseMouse();
}

void FormView::moveEvent(QMoveEvent*) {
  if (!isVisible() || retired_ || pos() == wanted_) return;
  // Reports of our own earlier moves come late, and window managers keep windows on the screen:
  // neither is the user's hand.
  if (!dragging_ && !settling_.hasExpired()) return;
  FollowTheUser();
}

void FormView::FollowTheUser() {
  const QPoint place = pos() - ScreenOrigin();
  wanted_ = pos();
  following_ = true;
  form_.SetLeft(static_cast<float>(place.x()) * kTwipsPerPixel);
  form_.SetTop(static_cast<float>(place.y()) * kTwipsPerPixel);
  following_ = false;
}

void FormView::closeEvent(QCloseEvent* event) {
  event->ignore();
  Deliver([this] {
    if (const auto close = form_.on_close) close();
  });
}

void FormView::dragEnterEvent(QDragEnterEvent* event) {
  if (form_.on_drop && event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void FormView::dropEvent(QDropEvent* event) {
  std::vector<std::string> files;
  for (const QUrl& url : event->mimeData()->urls()) {
    if (url.isLocalFile()) files.push_back(url.toLocalFile().toStdString());
  }
  event->acceptProposedAction();
  // The program that the files come from waits until the drop is over: no box may stand in its way.
  QMetaObject::invokeMethod(
      this, [this, files] { Deliver([this, &files] { form_.UserDrop(files); }); },
      Qt::QueuedConnection);
}

}  // namespace velumar
