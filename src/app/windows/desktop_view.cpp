#include "app/windows/desktop_view.h"

#include <QtWidgets>
#include <algorithm>
#include <chrono>
#include <iterator>
#include <utility>

#include "app/windows/native_form.h"

namespace velumar {

namespace {

using std::chrono_literals::operator""ms;

constexpr auto kSettlingTime = 300ms;

// The origin of the logic's coordinates.
QPoint ScreenOrigin() { return QGuiApplication::primaryScreen()->geometry().topLeft(); }

bool TakesInput(const Form& form) {
  return std::ranges::any_of(form.Controls(), [](const Control* control) {
    return control->Kind() != ControlKind::kLabel && control->Kind() != ControlKind::kPicture;
  });
}

// Other programs and the taskbar can give the focus to a window with something to click. One that
// only shows a number never takes the focus from the chart.
Qt::WindowFlags FlagsFor(const Form& form) {
  Qt::WindowFlags flags;
  if (form.Bordered()) {
    flags = Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint;
  } else {
    flags = Qt::FramelessWindowHint;
    flags |= TakesInput(form) ? Qt::Window : Qt::Tool | Qt::WindowDoesNotAcceptFocus;
  }
  if (form.Topmost()) flags |= Qt::WindowStaysOnTopHint;
  return flags;
}

}  // namespace

FormView::FormView(Form& form, const Appearance& look, ErrorReport report)
    : form_(form), context_(*this, form, look, std::move(report)) {
  setObjectName(ToQt(form.Name()));
  setAttribute(Qt::WA_TranslucentBackground, !form.Bordered() && WindowsMayBlend());
  setAttribute(Qt::WA_ShowWithoutActivating, !TakesInput(form));
  setAttribute(Qt::WA_AlwaysShowToolTips);  // also while the chart has the focus
  MakeViews();
  for (const auto& [control, view] : views_) view->Update();
  OrderTabs();
  // Files that are dropped on a box are for the window.
  for (QLineEdit* const line : findChildren<QLineEdit*>()) line->setAcceptDrops(false);
  setAcceptDrops(true);
  Update();
}

// The order of the table, except that the picture buttons in the title come last.
void FormView::OrderTabs() {
  const std::vector<Control*>& controls = form_.Controls();
  const auto picture = [](const Control* control) {
    return control->Kind() == ControlKind::kPictureButton;
  };
  const auto takes_keys = [&](const Control* control) {
    return views_.at(control)->Widget().focusPolicy() != Qt::NoFocus && !picture(control);
  };
  const auto first = std::ranges::find_if(controls, takes_keys);
  std::vector<Control*> order(first, controls.end());
  std::copy_if(controls.begin(), first, std::back_inserter(order), picture);
  for (std::size_t i = 1; i < order.size(); ++i) {
    setTabOrder(&views_.at(order[i - 1])->Widget(), &views_.at(order[i])->Widget());
  }
  const auto shown = std::ranges::find_if(
      order, [&](const Control* control) { return control->Visible() && takes_keys(control); });
  if (shown != order.end()) views_.at(*shown)->Widget().setFocus();
}

// Containers clip their controls. A menu bar lies above the contents and doesn't scroll.
void FormView::MakeViews() {
  QWidget& contents = form_.Bordered() ? MakeScrolledContents() : *this;
  for (Control* control : form_.Controls()) {
    const Control* container = control->Container();
    const bool menu = control->Kind() == ControlKind::kMenu;
    QWidget& window = menu ? *this : contents;
    QWidget& parent = container == nullptr ? window : views_.at(container)->Widget();
    views_[control] = MakeControlView(context_, parent, *control);
    if (menu) menu_bar_ = &views_[control]->Widget();
  }
}

// A window may be larger than the screen, especially at 200 %. The Tab key scrolls to its controls.
QWidget& FormView::MakeScrolledContents() {
  scroll_ = new QScrollArea(this);
  scroll_->setFrameShape(QFrame::NoFrame);
  scroll_->setFocusPolicy(Qt::NoFocus);
  auto* contents = new QWidget;
  contents->setFixedSize(LogicalPixels(form_.Width()), LogicalPixels(form_.Height()));
  scroll_->setWidget(contents);
  // Both leave the window's own background visible.
  scroll_->viewport()->setAutoFillBackground(false);
  contents->setAutoFillBackground(false);
  return *contents;
}

void FormView::FitSize() {
  const int menu_height = menu_bar_ == nullptr ? 0 : menu_bar_->sizeHint().height();
  const QSize whole(LogicalPixels(form_.Width()), LogicalPixels(form_.Height()) + menu_height);
  if (scroll_ == nullptr) return setFixedSize(whole);
  const QSize border(16, 40);  // at most, with the title bar
  const QSize room = screen()->availableSize() - border;
  // A scroll bar takes room in the other direction.
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
  if (context_.Retired()) return;
  // The program gives the focus to windows by their title, so a window that can't take it has none.
  const std::string& title = TakesInput(form_) ? form_.Caption() : form_.Name();
  setWindowTitle(title.empty() ? QStringLiteral(" ") : ToQt(title));
  FitSize();
  const Qt::WindowFlags flags = FlagsFor(form_);
  if (windowFlags() != flags) setWindowFlags(flags);
  UpdatePlace();
  UpdateShape();
  UpdateVisible();
}

void FormView::UpdateControl(Control& control) {
  const auto view = views_.find(&control);
  if (!context_.Retired() && view != views_.end()) view->second->Update();
}

void FormView::ApplyLook() {
  if (context_.Retired()) return;
  for (const auto& [control, view] : views_) view->Update();
  update();
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

// Another screen may have another size or scale, and corners are cut in device pixels.
void FormView::FollowScreen() {
  if (context_.Retired()) return;
  FitSize();
  if (!blended_ && !form_.Bordered()) CutCorners(*this, corners_);
}

void FormView::showEvent(QShowEvent* event) {
  constexpr auto kOnceLater = Qt::ConnectionType(Qt::QueuedConnection | Qt::UniqueConnection);
  connect(windowHandle(), &QWindow::screenChanged, this, &FormView::FollowScreen, kOnceLater);
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

void FormView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  if (form_.Bordered()) return painter.fillRect(rect(), context_.Look().palette.window);
  // The pixels between the outline and the mask.
  if (!blended_) painter.fillRect(rect(), context_.Look().palette.edge);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(context_.Look().palette.edge);
  painter.setBrush(context_.Look().palette.window);
  painter.drawPath(context_.Outline());
}

void FormView::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (event->key() != Qt::Key_Escape && (!enter || event->isAutoRepeat())) {
    return QWidget::keyPressEvent(event);
  }
  const auto handler = enter ? form_.on_enter : form_.on_escape;
  if (!handler) return QWidget::keyPressEvent(event);
  context_.Deliver(handler);
}

void FormView::StartDrag() {
  const Qt::MouseButtons held = QGuiApplication::mouseButtons();
  if (!isVisible() || held == Qt::NoButton) return;
  dragging_ = true;
  // Window systems move windows only with the left button.
  if (held == Qt::LeftButton && MoveWithMouse(*this)) return;
  grip_ = QCursor::pos() - pos();
  grabMouse();
}

void FormView::mouseMoveEvent(QMouseEvent* event) {
  if (mouseGrabber() == this) move(event->globalPosition().toPoint() - grip_);
}

void FormView::moveEvent(QMoveEvent*) {
  if (!isVisible() || context_.Retired() || pos() == wanted_) return;
  // Our own moves are reported late, and window managers move windows onto the screen: neither is a
  // move by the user.
  if (!dragging_ && !settling_.hasExpired()) return;
  ReportPlace();
}

void FormView::ReportPlace() {
  const QPoint place = pos() - ScreenOrigin();
  wanted_ = pos();
  following_ = true;
  form_.SetLeft(static_cast<float>(place.x()) * kTwipsPerPixel);
  form_.SetTop(static_cast<float>(place.y()) * kTwipsPerPixel);
  following_ = false;
}

void FormView::closeEvent(QCloseEvent* event) {
  event->ignore();
  context_.Deliver([this] {
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
  // The other program waits until the drop is over, so a message box must not delay it.
  QMetaObject::invokeMethod(
      this, [this, files] { context_.Deliver([this, &files] { form_.UserDrop(files); }); },
      Qt::QueuedConnection);
}

DesktopView::DesktopView(Desktop& desktop, Appearance look, ErrorReport report)
    : desktop_(desktop), look_(std::move(look)), report_(std::move(report)) {
  desktop_.SetListener(this);
}

DesktopView::~DesktopView() {
  desktop_.SetListener(nullptr);
  for (const auto& [form, view] : views_) delete view;
}

FormView* DesktopView::Find(const Form& form) const {
  const auto found = views_.find(&form);
  return found == views_.end() ? nullptr : found->second;
}

void DesktopView::SetTheme(const Palette& palette) {
  look_.palette = palette;
  for (const auto& [form, view] : views_) view->ApplyLook();
}

void DesktopView::Raise() {
  for (const auto& [form, view] : views_) {
    if (form->Visible()) view->ComeUp();
  }
}

void DesktopView::FormLoaded(Form& form) { views_[&form] = new FormView(form, look_, report_); }

void DesktopView::FormUnloaded(Form& form) {
  if (FormView* view = Find(form)) {
    views_.erase(&form);
    view->Retire();
  }
}

void DesktopView::FormChanged(Form& form) {
  if (FormView* view = Find(form)) view->Update();
}

void DesktopView::ControlChanged(Form& form, Control& control) {
  if (FormView* view = Find(form)) view->UpdateControl(control);
}

void DesktopView::FormRaised(Form& form) {
  FormView* view = Find(form);
  if (view == nullptr) return;
  view->ComeUp();
  view->activateWindow();
}

void DesktopView::DragStarted(Form& form) {
  if (FormView* view = Find(form)) view->StartDrag();
}

}  // namespace velumar
