#include <QtWidgets>
#include <algorithm>
#include <numeric>

#include "app/controls/control_view.h"
#include "app/controls/text_box.h"
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
    } else if ((" " + UpperCased(rows[i].note)).find(" " + wanted) != std::string::npos) {
      by_note.push_back(row);
    }
  }
  matches.insert(matches.end(), by_note.begin(), by_note.end());
  return matches;
}

// The rows of a box in a list: all of them, or those that match a search.
class ComboRows : public QAbstractListModel {
 public:
  void Show(const std::vector<ComboBox::Row>& rows) {
    std::vector<int> all(rows.size());
    std::iota(all.begin(), all.end(), 0);
    Show(rows, all);
  }
  void Show(const std::vector<ComboBox::Row>& rows, const std::vector<int>& which);
  // True if exactly these rows are shown.
  bool Shows(const std::vector<ComboBox::Row>& rows) const {
    return std::ranges::equal(rows, lines_, [](const ComboBox::Row& row, const Line& line) {
      return row.text == line.row.text && row.note == line.row.note;
    });
  }
  // The width of a list that shows every text and note in full, within these limits.
  int ListWidth(const QFontMetrics& metrics, int least, int most) const;

  int rowCount(const QModelIndex& parent) const override {
    return parent.isValid() ? 0 : static_cast<int>(lines_.size());
  }
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  struct Line {
    ComboBox::Row row;
    int index = 0;
  };
  std::vector<Line> lines_;
};

void ComboRows::Show(const std::vector<ComboBox::Row>& rows, const std::vector<int>& which) {
  beginResetModel();
  lines_.clear();
  lines_.reserve(which.size());
  for (const int index : which) {
    lines_.push_back({rows.at(static_cast<std::size_t>(index)), index});
  }
  endResetModel();
}

int ComboRows::ListWidth(const QFontMetrics& metrics, int least, int most) const {
  constexpr int kScrollBarRoom = 24;
  std::string_view text;
  std::string_view note;
  for (const auto& [row, index] : lines_) {
    if (row.text.size() > text.size()) text = row.text;
    if (row.note.size() > note.size() && row.note != row.text) note = row.note;
  }
  const int wanted = note.empty() ? metrics.horizontalAdvance(ToQt(text))
                                  : NoteColumn(metrics) + metrics.horizontalAdvance(ToQt(note));
  return std::clamp(wanted + 2 * kListMargin + kScrollBarRoom, least, std::max(least, most));
}

QVariant ComboRows::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const Line& line = lines_.at(static_cast<std::size_t>(index.row()));
  const QString text = ToQt(line.row.text);
  const QString note = line.row.note == line.row.text ? QString() : ToQt(line.row.note);
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
  explicit ComboBoxView(const Parts& parts);
  void Update() override;
  void showPopup() override {
    FitList(*view());
    QComboBox::showPopup();
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override {
    event->accept();
    PassKeyUp(*event);
  }
  // Scrolling over the window must not change the security.
  void wheelEvent(QWheelEvent* event) override {
    line_.hasFocus() ? QComboBox::wheelEvent(event) : event->ignore();
  }

 private:
  // A list that opens without measuring each of its thousands of rows.
  QListView* NewList() {
    auto* list = new QListView(this);
    list->setUniformItemSizes(true);
    return list;
  }
  void StyleList(QAbstractItemView& list) const {
    list.setPalette(Colours().ForWidgets());
    list.setFont(context_.Look().faces.Plain(kListPixels));
  }
  void FitList(QAbstractItemView& list) const {
    list.setMinimumWidth(
        rows_.ListWidth(list.fontMetrics(), width(), screen()->geometry().width() / 2));
  }
  void ConnectLine();
  void OfferMatches();
  void Choose(int row) {
    Pass(&ComboBox::UserChoose, row);
    Update();
  }
  void UpdateText();
  void UpdateToolTip() { setToolTip(line_.ToolTipFor(ToQt(model_.ToolTip()))); }

  FittingLineEdit& line_;
  ComboRows rows_;
  ComboRows matches_;
  QCompleter* completer_ = nullptr;  // only if the box offers matches
};

ComboBoxView::ComboBoxView(const Parts& parts) : View(parts), line_(*new FittingLineEdit) {
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
  line_.setReadOnly(!model_.Typable());
  if (model_.Searched()) OfferMatches();
  connect(this, &QComboBox::activated, this, &ComboBoxView::Choose);
}

void ComboBoxView::ConnectLine() {
  // Leaving the line or pressing Enter must not choose the row that equals the typed text.
  QObject::disconnect(&line_, &QLineEdit::editingFinished, this, nullptr);
  QObject::disconnect(&line_, &QLineEdit::returnPressed, this, nullptr);
  line_.installEventFilter(this);
  connect(&line_, &QLineEdit::textEdited, this, [this](const QString& text) {
    PassTypedText(text);
    if (completer_ != nullptr) {
      matches_.Show(model_.Rows(), MatchingRows(model_.Rows(), text.toStdString()));
      StyleList(*completer_->popup());
      FitList(*completer_->popup());
    }
    UpdateToolTip();
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

void ComboBoxView::Update() {
  View::Update();
  ApplyFieldColours(*this, model_, Colours());
  const QFont font = FitLine(DesignFont(), height());
  setFont(font);
  line_.SetFullFont(font);
  view()->setPalette(Colours().ForWidgets());
  const QSignalBlocker quiet(this);
  const QSignalBlocker quiet_line(&line_);
  if (!rows_.Shows(model_.Rows())) rows_.Show(model_.Rows());
  UpdateText();
}

void ComboBoxView::UpdateText() {
  const QString wanted = ToQt(model_.Text());
  if (currentIndex() != model_.Index() || line_.text() != wanted) {
    const int cursor = line_.cursorPosition();
    setCurrentIndex(model_.Index());
    line_.SetShownText(wanted);
    line_.setCursorPosition(std::min(cursor, static_cast<int>(wanted.size())));
  }
  UpdateToolTip();
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
    Pass(&ComboBox::UserDoubleClick);
  } else if (event->type() == QEvent::FocusOut && !offered) {
    Pass(&ComboBox::UserLeave);
  } else if (event->type() == QEvent::KeyRelease) {
    // The line has the focus and doesn't pass the event on.
    keyReleaseEvent(static_cast<QKeyEvent*>(event));
    return true;
  }
  return QComboBox::eventFilter(watched, event);
}

}  // namespace

void AddComboBoxView(ViewMakers& makers) {
  makers[ControlKind::kComboBox] = MakeView<ComboBoxView>;
}

}  // namespace velumar
