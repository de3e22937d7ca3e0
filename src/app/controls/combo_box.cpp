#include <QAbstractListModel>
#include <QComboBox>
#include <QCompleter>
#include <QKeyEvent>
#include <QListView>
#include <QPainter>
#include <QScreen>
#include <QSignalBlocker>
#include <QStyledItemDelegate>
#include <algorithm>
#include <numeric>

#include "app/controls/control_view.h"
#include "app/controls/key_codes.h"
#include "app/controls/text_box.h"
#include "app/theme/fonts.h"
#include "base/text.h"

namespace velumar {

namespace {

constexpr int kListMargin = 4;
constexpr int kVisibleRows = 16;
constexpr int kListPixels = 12;
constexpr int kNoteRole = Qt::UserRole;
constexpr int kRowRole = Qt::UserRole + 1;  // the index among all rows of the box
constexpr int kNoRole = Qt::UserRole + 2;   // never has a text

// Notes start after the longest symbol that an index file can hold.
int NoteColumn(const QFontMetrics& metrics) {
  return metrics.horizontalAdvance(QStringLiteral("MMMMMMMM"));
}

QString NoteOf(const ComboBox::Row& row) {
  return row.note == row.text ? QString() : ToQString(row.note);
}

bool HasWordThatBeginsWith(std::string_view note, std::string_view wanted) {
  for (std::size_t at = note.find(wanted); at != std::string_view::npos;
       at = note.find(wanted, at + 1)) {
    if (at == 0 || note[at - 1] == ' ') return true;
  }
  return false;
}

// The indexes of the rows that a typed text may mean, best first: rows that begin with it, then
// rows with a word in the note that does. Ignores case and spaces around the text; an empty text
// matches nothing.
std::vector<int> MatchingRows(const std::vector<ComboBox::Row>& rows, std::string_view typed) {
  const std::string wanted = NormalisedSymbol(typed);
  std::vector<int> matches;
  if (wanted.empty()) return matches;
  std::vector<int> by_note;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const auto row = static_cast<int>(i);
    if (UpperCased(rows[i].text).starts_with(wanted)) {
      matches.push_back(row);
    } else if (HasWordThatBeginsWith(UpperCased(rows[i].note), wanted)) {
      by_note.push_back(row);
    }
  }
  matches.insert(matches.end(), by_note.begin(), by_note.end());
  return matches;
}

// The rows of a box in a list: all of them, or those that match a search.
class ComboRows : public QAbstractListModel {
 public:
  void Show(const std::vector<ComboBox::Row>& rows);
  void Show(const std::vector<ComboBox::Row>& rows, const std::vector<int>& which);
  // True if exactly these rows are shown.
  bool Shows(const std::vector<ComboBox::Row>& rows) const;
  // The width of a list that shows every text and note in full, within these limits.
  int ListWidth(const QFontMetrics& metrics, int least, int most) const;

  int rowCount(const QModelIndex& parent) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  struct Line {
    ComboBox::Row row;
    int index = 0;
  };
  std::vector<Line> lines_;
  std::string longest_text_;
  std::string longest_note_;
};

void ComboRows::Show(const std::vector<ComboBox::Row>& rows) {
  std::vector<int> all(rows.size());
  std::iota(all.begin(), all.end(), 0);
  Show(rows, all);
}

void ComboRows::Show(const std::vector<ComboBox::Row>& rows, const std::vector<int>& which) {
  const auto keep_longer = [](std::string& longest, const std::string& text) {
    if (text.size() > longest.size()) longest = text;
  };
  beginResetModel();
  lines_.clear();
  lines_.reserve(which.size());
  longest_text_.clear();
  longest_note_.clear();
  for (const int index : which) {
    const ComboBox::Row& row = rows.at(static_cast<std::size_t>(index));
    lines_.push_back({row, index});
    keep_longer(longest_text_, row.text);
    if (row.note != row.text) keep_longer(longest_note_, row.note);
  }
  endResetModel();
}

bool ComboRows::Shows(const std::vector<ComboBox::Row>& rows) const {
  return std::equal(rows.begin(), rows.end(), lines_.begin(), lines_.end(),
                    [](const ComboBox::Row& row, const Line& line) {
                      return row.text == line.row.text && row.note == line.row.note;
                    });
}

int ComboRows::ListWidth(const QFontMetrics& metrics, int least, int most) const {
  constexpr int kScrollBarRoom = 24;
  const int text = metrics.horizontalAdvance(ToQString(longest_text_));
  const int note = metrics.horizontalAdvance(ToQString(longest_note_));
  const int wanted = note == 0 ? text : NoteColumn(metrics) + note;
  return std::clamp(wanted + 2 * kListMargin + kScrollBarRoom, least, std::max(least, most));
}

int ComboRows::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(lines_.size());
}

QVariant ComboRows::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const Line& line = lines_.at(static_cast<std::size_t>(index.row()));
  const QString text = ToQString(line.row.text);
  const QString note = NoteOf(line.row);
  switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
      return text;
    case Qt::AccessibleTextRole:
      return note.isEmpty() ? text : text + QStringLiteral(", ") + note;
    case kNoteRole:
      return note;
    case kRowRole:
      return line.index;
    default:
      return {};
  }
}

// Draws the note of a row in a column of its own.
class ComboRowPainter : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    QStyledItemDelegate::paint(painter, option, index);
    const QString note = index.data(kNoteRole).toString();
    if (note.isEmpty()) return;
    const int text = option.fontMetrics.horizontalAdvance(index.data().toString());
    const int start = std::max(NoteColumn(option.fontMetrics), text + 3 * kListMargin);
    const QRect room = option.rect.adjusted(start, 0, -kListMargin, 0);
    const bool chosen = option.state.testFlag(QStyle::State_Selected);
    painter->save();
    painter->setFont(option.font);
    painter->setPen(
        option.palette.color(chosen ? QPalette::HighlightedText : QPalette::PlaceholderText));
    painter->drawText(room, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                      option.fontMetrics.elidedText(note, Qt::ElideRight, room.width()));
    painter->restore();
  }
};

// Completes to the symbol alone. The matches are computed outside.
class MatchCompleter : public QCompleter {
 public:
  using QCompleter::QCompleter;
  QString pathFromIndex(const QModelIndex& index) const override {
    return index.data(Qt::DisplayRole).toString();
  }
};

// A list with a line to type into, which offers the rows that a typed text may mean. A row chosen
// in the list or by the arrow keys is a choice in the model; a typed text is only a text, even if
// it equals a row.
class ComboBoxView : public View<QComboBox, ComboBox> {
 public:
  ComboBoxView(FormContext& context, QWidget& parent, ComboBox& box);
  void Update() override;
  void showPopup() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  // A list that opens without measuring each of its thousands of rows.
  QListView* NewList();
  void StyleList(QAbstractItemView& list) const;
  void FitList(QAbstractItemView& list) const;
  void ConnectLine();
  void OfferMatches();
  void Choose(int row);
  void UpdateText();

  FittingLineEdit& line_;
  ComboRows rows_;
  ComboRows matches_;
  QCompleter* completer_ = nullptr;  // only if the box offers matches
};

ComboBoxView::ComboBoxView(FormContext& context, QWidget& parent, ComboBox& box)
    : View(context, parent, box), line_(*new FittingLineEdit) {
  setModel(&rows_);
  setView(NewList());
  setItemDelegate(new ComboRowPainter(this));
  StyleList(*view());
  setLineEdit(&line_);
  setCompleter(nullptr);
  setInsertPolicy(QComboBox::NoInsert);
  setDuplicatesEnabled(true);
  setMaxVisibleItems(kVisibleRows);
  setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  setFocusPolicy(Qt::StrongFocus);
  ConnectLine();
  line_.setReadOnly(!box.Typable());
  if (box.Sorted()) OfferMatches();
  connect(this, &QComboBox::activated, this, &ComboBoxView::Choose);
}

QListView* ComboBoxView::NewList() {
  auto* list = new QListView(this);
  list->setUniformItemSizes(true);
  return list;
}

void ComboBoxView::StyleList(QAbstractItemView& list) const {
  list.setPalette(Colours().Palette());
  list.setFont(context_.Look().faces.Plain(kListPixels));
}

void ComboBoxView::FitList(QAbstractItemView& list) const {
  list.setMinimumWidth(
      rows_.ListWidth(list.fontMetrics(), width(), screen()->geometry().width() / 2));
}

void ComboBoxView::ConnectLine() {
  // Leaving the line or pressing Enter must not choose the row that equals the typed text.
  QObject::disconnect(&line_, &QLineEdit::editingFinished, this, nullptr);
  QObject::disconnect(&line_, &QLineEdit::returnPressed, this, nullptr);
  line_.installEventFilter(this);
  connect(&line_, &QLineEdit::textEdited, this, [this](const QString& text) {
    context_.Deliver([this, &text] {
      if (model_.Reachable()) model_.SetText(text.toStdString());
    });
    if (completer_ != nullptr) {
      matches_.Show(model_.Rows(), MatchingRows(model_.Rows(), text.toStdString()));
      StyleList(*completer_->popup());
      FitList(*completer_->popup());
    }
    setToolTip(line_.ToolTipFor(ToQString(model_.ToolTip())));
  });
}

void ComboBoxView::OfferMatches() {
  completer_ = new MatchCompleter(&matches_, this);
  completer_->setCompletionMode(QCompleter::UnfilteredPopupCompletion);
  // Enter takes only a row that the arrow keys went to, never the one that equals the text.
  completer_->setCompletionRole(kNoRole);
  completer_->setMaxVisibleItems(kVisibleRows);
  QListView* list = NewList();
  completer_->setPopup(list);
  list->setItemDelegate(new ComboRowPainter(list));
  list->installEventFilter(this);
  line_.setCompleter(completer_);
  connect(completer_, qOverload<const QModelIndex&>(&QCompleter::activated), this,
          [this](const QModelIndex& index) {
            if (index.isValid()) Choose(index.data(kRowRole).toInt());
          });
}

void ComboBoxView::Choose(int row) {
  context_.Deliver([this, row] { model_.UserChoose(row); });
  Update();
}

void ComboBoxView::Update() {
  View::Update();
  ApplyFieldColours(*this, model_, Colours());
  const QFont font = FitLine(DesignFont(), height());
  setFont(font);
  line_.SetFullFont(font);
  view()->setPalette(Colours().Palette());
  if (!rows_.Shows(model_.Rows())) {
    const QSignalBlocker quiet(this);
    const QSignalBlocker quiet_line(&line_);
    rows_.Show(model_.Rows());
  }
  UpdateText();
}

void ComboBoxView::UpdateText() {
  const QString wanted = ToQString(model_.Text());
  if (currentIndex() != model_.Index() || line_.text() != wanted) {
    const QSignalBlocker quiet(this);
    const QSignalBlocker quiet_line(&line_);
    const int cursor = line_.cursorPosition();
    setCurrentIndex(model_.Index());
    line_.SetShownText(wanted);
    line_.setCursorPosition(std::min(cursor, static_cast<int>(wanted.size())));
    line_.SetFullFont(font());
  }
  setToolTip(line_.ToolTipFor(ToQString(model_.ToolTip())));
}

void ComboBoxView::showPopup() {
  FitList(*view());
  QComboBox::showPopup();
}

bool ComboBoxView::eventFilter(QObject* watched, QEvent* event) {
  const bool offered = completer_ != nullptr && watched == completer_->popup();
  if (offered && event->type() == QEvent::Hide) {
    // The arrow keys have put other rows into the line. If none was taken, the typed text returns.
    QMetaObject::invokeMethod(
        this, [this] { Update(); }, Qt::QueuedConnection);
    return false;
  }
  if (watched != &line_ && !offered) return QComboBox::eventFilter(watched, event);
  // A click on a line that can't be edited opens the list.
  if (event->type() == QEvent::MouseButtonRelease && !model_.Typable()) showPopup();
  if (event->type() == QEvent::MouseButtonDblClick && !offered) {
    context_.Deliver([this] { model_.UserDoubleClick(); });
  } else if (event->type() == QEvent::KeyRelease) {
    // The line has the focus and doesn't pass the event on.
    keyReleaseEvent(static_cast<QKeyEvent*>(event));
    return true;
  }
  return QComboBox::eventFilter(watched, event);
}

void ComboBoxView::keyReleaseEvent(QKeyEvent* event) {
  event->accept();
  if (event->isAutoRepeat()) return;
  const int code = VirtualKeyCode(*event);
  context_.Deliver([this, code] { model_.UserKeyUp(code); });
}

void ComboBoxView::wheelEvent(QWheelEvent* event) {
  if (line_.hasFocus()) {
    QComboBox::wheelEvent(event);
  } else {
    event->ignore();  // scrolling over the window must not change the security
  }
}

}  // namespace

void AddComboBoxView(ViewMakers& makers) {
  makers[ControlKind::kComboBox] = MakeView<ComboBoxView>;
}

}  // namespace velumar
