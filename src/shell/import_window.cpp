#include "shell/import_window.h"

#include <algorithm>
#include <array>
#include <exception>
#include <iterator>
#include <memory>
#include <utility>

#include "base/dates.h"
#include "base/number_text.h"
#include "base/paths.h"
#include "base/text.h"
#include "marketdata/interval.h"
#include "shell/event_guard.h"
#include "shell/window_shaping.h"

namespace velumar {

namespace {

constexpr std::string_view kDeciding = "Reading the file again";
constexpr std::string_view kPriceFiles =
    "Only price files can be imported: .csv, .txt, .tsv, .prn, .zip and .gz.";

// Those of the exchanges that most price files come from; any other can be typed.
constexpr std::array kZones = {"",
                               "UTC",
                               "Europe/London",
                               "Europe/Berlin",
                               "America/New_York",
                               "America/Chicago",
                               "Asia/Bangkok",
                               "Asia/Hong_Kong",
                               "Asia/Singapore",
                               "Asia/Tokyo",
                               "Australia/Sydney"};

constexpr int kAsInTheFile = 0;

void FillZones(ComboBox& list) {
  std::vector<ComboBox::Row> rows;
  for (const char* zone : kZones) rows.push_back({zone});
  list.SetRows(std::move(rows));
}

void ChooseData(ComboBox& list, int data) {
  const auto& rows = list.Rows();
  const auto row = std::ranges::find(rows, data, &ComboBox::Row::data);
  if (row != rows.end()) list.SetIndex(static_cast<int>(row - rows.begin()));
}

int ChosenData(const ComboBox& list) {
  return list.Index() < 0 ? 0 : list.Rows().at(static_cast<std::size_t>(list.Index())).data;
}

std::string PriceText(float price) { return PatternText(price, "########0.#########"); }

std::string DayText(const std::optional<std::int32_t>& day) { return day ? IsoDate(*day) : ""; }

std::optional<std::string> Given(std::string_view text) {
  const std::string typed = Trimmed(text);
  return typed.empty() ? std::nullopt : std::optional(typed);
}

bool HasAdjustedPrices(const FileFormat& format) {
  return std::ranges::count(format.columns, PriceField::kAdjustedClose, &ColumnMeaning::field) > 0;
}

// Where prices are multiplied, how the last one of the file then looks.
std::string ScaleText(const BatchFile& file) {
  const int scale = std::max(file.tradable_scale, file.options.scale);
  if (scale == 1) return "Multiply prices";
  std::string text = "Multiply prices by " + std::to_string(scale);
  if (file.options.scale == 1 || file.understood.tail.empty()) return text;
  const std::string price = PriceText(file.understood.tail.back().bar.close);
  constexpr int kPips = 10000;
  return text + (scale == kPips ? ", in pips: " : ": ") + price;
}

// The first and the last rows of a file, with a gap where it has more.
std::vector<SampleRow> ShownRows(const Understanding& understood) {
  std::vector<SampleRow> rows = understood.head;
  const std::int64_t shown = rows.empty() ? 0 : rows.back().line;
  std::vector<SampleRow> tail;
  std::ranges::copy_if(understood.tail, std::back_inserter(tail),
                       [shown](const SampleRow& row) { return row.line > shown; });
  if (!tail.empty() && !rows.empty() && tail.front().line > shown + 1) rows.push_back({});
  rows.insert(rows.end(), tail.begin(), tail.end());
  return rows;
}

// Line, text and bar.
std::string RowText(const SampleRow& row, std::size_t column, bool timed) {
  if (row.line == 0) return column == 1 ? "..." : "";
  const Bar& bar = row.bar;
  const std::array prices = {bar.open, bar.high, bar.low, bar.close, bar.volume};
  switch (column) {
    case 0:
      return std::to_string(row.line);
    case 1:
      return row.text;
    case 2:
      return IsoDate(bar.date);
    case 3:
      return timed ? PatternText(bar.time, kTimePattern) : "";
    default:
      return PriceText(prices.at(column - 4));
  }
}

}  // namespace

ImportWindow::ImportWindow(Desktop& desktop, Platform& platform, PriceImporter& importer,
                           Surroundings surroundings)
    : desktop_(desktop),
      platform_(platform),
      importer_(importer),
      surroundings_(std::move(surroundings)) {
  FrmImport& form = Window();
  const EventGuard guarded(platform_.boxes);
  form.on_load = guarded("Opening the import", [this] { Load(); });
  form.on_close = guarded("Closing the import", [this] { Close(); });
  form.on_escape = form.cmdClose.on_click = guarded("Closing the import", [this] { Stop(); });
  form.on_enter = guarded("Importing the price files", [this] { Enter(); });
  form.on_drop = guarded("Reading the price files", [this](const std::vector<std::string>& files) {
    Offer(files, directory_);
    ReadFiles();
  });
  form.lstFiles.on_select = guarded("Showing the file", [this] { ChooseFile(); });
  form.cmdNext.on_click = guarded("Showing the file", [this] { ChooseNextQuestion(); });
  form.cmdImport.on_click = guarded("Importing the price files", [this] { Import(); });
  for (std::size_t i = 0; i < FrmImport::kMostAnswers; ++i) {
    form.Answers().at(i)->on_click = guarded(kDeciding, [this, i] { Answer(i); });
  }
  BindBoxes();
}

void ImportWindow::BindBoxes() {
  FrmImport& form = Window();
  const EventGuard guarded(platform_.boxes);
  const auto take_texts = guarded(kDeciding, [this] { TakeTypedTexts(); });
  for (TextBox* box : {&form.txtSymbol, &form.txtName, &form.txtFrom, &form.txtTo}) {
    box->on_leave = take_texts;
  }
  for (ComboBox* box : {&form.cbxFromZone, &form.cbxToZone}) {
    box->on_leave = box->on_click = take_texts;
  }
  form.cbxInterval.on_click = guarded(kDeciding, [this] {
    const int chosen = ChosenData(Window().cbxInterval);
    Decide([chosen](ImportOptions& options, const BatchFile&) {
      options.interval = chosen == kAsInTheFile ? std::nullopt : std::optional(chosen);
    });
  });
  form.cbxDates.on_click = guarded(kDeciding, [this] {
    const int chosen = ChosenData(Window().cbxDates);
    Decide([chosen](ImportOptions& options, const BatchFile&) {
      options.date_order =
          chosen == kAsInTheFile ? std::nullopt : std::optional(static_cast<DateOrder>(chosen - 1));
    });
  });
  form.cbxLong.on_click = guarded(kDeciding, [this] {
    const auto chosen = static_cast<TooLong>(ChosenData(Window().cbxLong));
    Decide([chosen](ImportOptions& options, const BatchFile&) { options.too_long = chosen; });
  });
  form.chkAdjusted.on_click = guarded(kDeciding, [this] {
    const Prices chosen = Window().chkAdjusted.Checked() ? Prices::kAdjusted : Prices::kAsTraded;
    Decide([chosen](ImportOptions& options, const BatchFile&) { options.prices = chosen; });
  });
  form.chkReplace.on_click = guarded(kDeciding, [this] {
    const bool replace = Window().chkReplace.Checked();
    Decide([replace](ImportOptions& options, const BatchFile&) { options.replace = replace; });
  });
  form.chkScale.on_click = guarded(kDeciding, [this] {
    const bool tradable = Window().chkScale.Checked();
    Decide([tradable](ImportOptions& options, const BatchFile& file) {
      options.scale = tradable ? file.tradable_scale : 1;
    });
  });
}

void ImportWindow::Load() {
  FrmImport& form = Window();
  ++load_;
  task_ = Task::kNone;
  batch_ = {};
  chosen_ = 0;
  chose_ = false;
  form.SetTopmost(true);
  CentreOnScreen(form, platform_.screen);
  form.lstFiles.SetColumns({{"File", false, 1830},
                            {"Symbol", false, 855},
                            {"Interval", false, 720},
                            {"First day", false, 1005},
                            {"Last day", false, 1005},
                            {"Bars", true, 795},
                            {"Remarks", false, 900}});
  form.lstRows.SetColumns({{"Line", true, 750},
                           {"As it is in the file", false, 5700},
                           {"Date", false, 1050},
                           {"Time", false, 900},
                           {"Open", true, 990},
                           {"High", true, 990},
                           {"Low", true, 990},
                           {"Close", true, 990},
                           {"Volume", true, 1200}});
  filling_ = true;
  FillZones(form.cbxFromZone);
  FillZones(form.cbxToZone);
  std::vector<ComboBox::Row> intervals = {{"as in the file", kAsInTheFile}};
  for (const int interval : kReplayIntervals) {
    intervals.push_back({IntervalName(interval), interval});
  }
  form.cbxInterval.SetRows(std::move(intervals));
  form.cbxDates.SetRows({{"as in the file", kAsInTheFile},
                         {"day/month/year", 1},
                         {"month/day/year", 2},
                         {"year/month/day", 3}});
  form.cbxLong.SetRows({{"ask", 0}, {"keep the last bars", 1}, {"split by year", 2}});
  filling_ = false;
}

void ImportWindow::Offer(const std::vector<std::string>& paths, std::string_view directory) {
  std::vector<std::filesystem::path> native;
  native.reserve(paths.size());
  for (const std::string& path : paths) native.push_back(NativePath(path));
  if (std::ranges::none_of(native, HoldsPrices)) {
    return platform_.boxes.Show(kPriceFiles, BoxIcon::kInformation);
  }
  if (directory != directory_ && task_ != Task::kImport) desktop_.Unload(Window());
  FrmImport& form = desktop_.frmImport();
  if (batch_.Size() == 0) directory_ = directory;
  form.SetCaption("Import into " + PathText(NativePath(directory_).make_preferred()));
  batch_.Add(std::move(native));
  ShowList();
  ShowFile();
  ShowTask();
  form.Show();
}

bool ImportWindow::Wanted(int load) const {
  const Desktop::Windows& windows = desktop_.Untouched();
  return load == load_ && windows.frmImport.Loaded() && windows.form1.Loaded();
}

// The setup goes on with the run.
void ImportWindow::Close() {
  if (!Window().Loaded()) return;
  desktop_.Unload(Window());
  Form1& setup = desktop_.Untouched().form1;
  if (setup.Visible()) setup.Show();
}

// The first time cancels what is being done, the second time closes the window.
void ImportWindow::Stop() {
  if (task_ == Task::kNone) return Close();
  cancelled_ = true;
}

void ImportWindow::Enter() {
  if (task_ != Task::kNone) return;
  if (TypedTexts() != filled_) return TakeTypedTexts();
  if (batch_.Count(FileState::kReady) > 0) return Import();
  if (batch_.Count(FileState::kImported) > 0) Close();
}

ImportProgress ImportWindow::Progress(int load, std::size_t step, std::size_t steps) {
  return [this, load, step, steps](double done) {
    if (!Wanted(load)) return false;
    const double part = (static_cast<double>(step) + done) / static_cast<double>(steps);
    Window().Progress.SetFraction(static_cast<float>(part));
    platform_.events.ProcessPending();
    return Wanted(load) && !cancelled_ && !interrupted_;
  };
}

void ImportWindow::ReadFiles() {
  if (task_ != Task::kNone || !Window().Loaded() || !batch_.NextWaiting(chosen_)) return;
  const int load = load_;
  task_ = Task::kRead;
  cancelled_ = false;
  while (const std::optional<std::size_t> next = batch_.NextWaiting(chosen_)) {
    ReadFile(*next, load);
    if (!Wanted(load)) return;
    if (cancelled_) batch_.StopWaiting();
  }
  task_ = Task::kNone;
  const bool asks = chosen_ < batch_.Size() && batch_.At(chosen_).state == FileState::kAsks;
  if (!chose_ && !asks && batch_.Count(FileState::kAsks) > 0) ChooseNextQuestion();
  ShowQuestion(batch_.At(chosen_));
  ShowTask();
  ShowStatus(SummaryText());
}

void ImportWindow::ReadFile(std::size_t file, int load) {
  const std::filesystem::path path = batch_.At(file).path;
  const ImportOptions options = batch_.At(file).options;
  const std::size_t left = batch_.Count(FileState::kWaiting);
  const std::size_t all = batch_.Size();
  interrupted_ = false;
  ShowTask();
  ShowStatus("Reading " + std::to_string(all - left + 1) + " of " + std::to_string(all) + ": " +
             PathText(path.filename()));
  const ImportProgress progress = Progress(load, all - left, all);
  Understanding understood;
  try {
    if (!progress(0)) return;
    understood = importer_.Understand(path, options, progress);
  } catch (const ImportCancelled&) {
    return;
  } catch (const std::exception& error) {
    understood.refusal = error.what();
  }
  if (!Wanted(load) || interrupted_) return;
  batch_.Take(file, std::move(understood));
  Window().lstFiles.Refresh();
  if (file == chosen_) ShowFile();
}

void ImportWindow::Import() {
  if (task_ != Task::kNone) return;
  if (surroundings_.replaying()) {
    return platform_.boxes.Show("Pause the replay before importing price files.",
                                BoxIcon::kInformation);
  }
  const int load = load_;
  const std::vector<std::size_t> ready = batch_.In(FileState::kReady);
  ImportReport stored;
  task_ = Task::kImport;
  cancelled_ = interrupted_ = false;
  ShowTask();
  ShowFile();
  bool whole = true;
  for (std::size_t i = 0; i < ready.size() && whole; ++i) {
    ShowStatus("Importing " + std::to_string(i + 1) + " of " + std::to_string(ready.size()) + ": " +
               PathText(batch_.At(ready[i]).path.filename()));
    whole = ImportFile(ready[i], load, Progress(load, i, ready.size()), stored);
  }
  if (Wanted(load)) {
    task_ = Task::kNone;
    ShowTask();
    ShowFile();
    ShowStatus((whole ? "" : "Cancelled. ") + ImportedText(ready, stored));
  }
  if (!stored.series.empty() && desktop_.Untouched().form1.Loaded()) {
    surroundings_.imported(stored.series.front().found);
  }
  if (Wanted(load)) ReadFiles();  // files may have been dropped since
}

bool ImportWindow::ImportFile(std::size_t file, int load, const ImportProgress& progress,
                              ImportReport& stored) {
  const std::filesystem::path path = batch_.At(file).path;
  const ImportOptions options = batch_.At(file).options;
  const std::string directory = directory_;
  try {
    if (!progress(0)) return false;
    ImportReport report = importer_.Import(path, directory, options, progress);
    std::ranges::copy_if(report.series, std::back_inserter(stored.series),
                         [](const ImportedSeries& series) { return series.error.empty(); });
    if (!Wanted(load)) return false;
    batch_.TakeReport(file, std::move(report));
  } catch (const ImportCancelled&) {
    return false;
  } catch (const std::exception& error) {
    if (!Wanted(load)) return false;
    batch_.TakeFailure(file, error.what());
  }
  Window().lstFiles.Refresh();
  return true;
}

std::string ImportWindow::ImportedText(const std::vector<std::size_t>& wanted,
                                       const ImportReport& stored) const {
  const auto imported = std::ranges::count_if(
      wanted, [this](std::size_t file) { return batch_.At(file).state == FileState::kImported; });
  std::string text =
      "Imported " + std::to_string(imported) + " of " + Counted(wanted.size(), "file") + ".";
  if (imported > 0) text.replace(text.size() - 1, 1, ": " + ReportText(stored) + ".");
  return text;
}

std::vector<std::size_t> ImportWindow::Selected() {
  const std::vector<std::size_t>& selected = Window().lstFiles.Selected();
  return selected.empty() ? std::vector<std::size_t>{chosen_} : selected;
}

void ImportWindow::Decide(const Change& change) {
  if (filling_ || task_ == Task::kImport || batch_.Size() == 0) return;
  for (const std::size_t file : Selected()) {
    ImportOptions options = batch_.At(file).options;
    change(options, batch_.At(file));
    if (options != batch_.At(file).options) batch_.Decide(file, std::move(options));
  }
  ReadAgain();
}

// If files are being read, the chosen one comes next.
void ImportWindow::ReadAgain() {
  interrupted_ = chose_ = true;
  Window().lstFiles.Refresh();
  ReadFiles();
}

ImportWindow::BoxTexts ImportWindow::TypedTexts() {
  const FrmImport& form = Window();
  return {form.txtSymbol.Text(), form.txtName.Text(),     form.txtFrom.Text(),
          form.txtTo.Text(),     form.cbxFromZone.Text(), form.cbxToZone.Text()};
}

void ImportWindow::TakeTypedTexts() {
  const BoxTexts typed = TypedTexts();
  if (filling_ || task_ == Task::kImport || typed == filled_) return;
  for (const std::string& day : {typed.from, typed.to}) {
    if (!Given(day) || TypedDay(day)) continue;
    return ShowStatus("\"" + day + "\" is not a day. Write it as 2024-12-31.", true);
  }
  const BoxTexts before = std::exchange(filled_, typed);
  Decide([&](ImportOptions& options, const BatchFile&) {
    if (typed.symbol != before.symbol) options.symbol = Given(typed.symbol);
    if (typed.name != before.name) options.name = Given(typed.name);
    if (typed.from != before.from) options.from = TypedDay(typed.from);
    if (typed.to != before.to) options.to = TypedDay(typed.to);
    if (typed.from_zone != before.from_zone) options.from_zone = Given(typed.from_zone);
    if (typed.to_zone != before.to_zone) options.to_zone = Given(typed.to_zone);
  });
}

// As 2024-12-31 or 20241231, or in the way of the desktop.
std::optional<std::int32_t> ImportWindow::TypedDay(std::string_view text) const {
  const std::string day = Trimmed(text);
  if (const auto digits = DateFromDigits(day)) return digits;
  if (const auto iso = DateFromText(day, "yyyy-MM-dd")) return iso;
  return DateFromText(day, platform_.locale.ShortDatePattern());
}

void ImportWindow::Answer(std::size_t answer) {
  if (task_ == Task::kImport || batch_.At(chosen_).state != FileState::kAsks) return;
  const FrmImport& form = Window();
  batch_.Answer(chosen_, answer, form.chkAll.Visible() && form.chkAll.Checked());
  ReadAgain();
}

void ImportWindow::ChooseNextQuestion() {
  const std::vector<std::size_t> asking = batch_.In(FileState::kAsks);
  if (asking.empty()) return;
  const auto next = std::ranges::upper_bound(asking, chosen_);
  chosen_ = next == asking.end() ? asking.front() : *next;
  Select();
}

// Shows the first of the selected files, unless the one that is shown is among them.
void ImportWindow::ChooseFile() {
  const std::vector<std::size_t>& selected = Window().lstFiles.Selected();
  if (filling_ || selected.empty()) return;
  chose_ = true;
  if (std::ranges::count(selected, chosen_) == 0) chosen_ = selected.front();
  ShowFile();
  ShowTask();
}

void ImportWindow::Select() {
  filling_ = true;
  Window().lstFiles.Select({chosen_});
  filling_ = false;
  ShowFile();
  ShowTask();
}

void ImportWindow::ShowList() {
  Window().lstFiles.SetContent(
      {batch_.Size(),
       [this](std::size_t row, std::size_t column) { return batch_.Text(row, column); },
       [this](std::size_t row) { return batch_.Tip(row); },
       [this](std::size_t row) { return batch_.Ink(row); }});
  Select();
}

void ImportWindow::ShowFile() {
  const BatchFile& file = batch_.At(chosen_);
  ShowQuestion(file);
  ShowBoxes(file);
  ShowLines(file.understood);
}

void ImportWindow::ShowQuestion(const BatchFile& file) {
  FrmImport& form = Window();
  const bool asks = file.state == FileState::kAsks;
  const auto& questions = file.understood.questions;
  const ImportQuestion question = asks ? questions.front() : ImportQuestion();
  const std::string name = PathText(file.path.filename());
  const std::string number =
      questions.size() > 1 ? " 1 of " + std::to_string(questions.size()) : "";
  form.fraFile.SetText(asks ? " Question" + number + " about " + name + " " : " " + name + " ");
  form.lstUnderstood.SetVisible(!asks);
  form.lstUnderstood.SetLines(UnderstoodLines(file));
  form.lblQuestion.SetVisible(asks);
  form.lblQuestion.SetText(question.text);
  ShowAnswers(question);
  form.lblResult1.SetVisible(asks && question.answers.size() <= FrmImport::kFewAnswers);
  if (question.answers.empty()) form.lblResult1.SetText("Decide it in a box below.");
  const std::size_t same = asks ? batch_.WithSameQuestion(chosen_) : 0;
  form.chkAll.SetVisible(!question.answers.empty() &&
                         (same > 1 || batch_.Count(FileState::kWaiting) > 0));
  form.chkAll.SetText("For all " + (same > 1 ? std::to_string(same) + " " : "") +
                      "files with this question");
}

void ImportWindow::ShowAnswers(const ImportQuestion& question) {
  FrmImport& form = Window();
  const auto& answers = question.answers;
  const bool few = answers.size() <= FrmImport::kFewAnswers;
  form.PlaceAnswers(answers.size());
  for (std::size_t i = 0; i < FrmImport::kMostAnswers; ++i) {
    const bool offered = i < answers.size();
    const std::string text = offered ? answers[i].text : "";
    const std::string result = offered ? answers[i].result : "";
    Button& button = *form.Answers().at(i);
    button.SetVisible(offered);
    button.SetEnabled(task_ != Task::kImport);
    button.SetText(few ? text : text + " (" + result + ")");
    if (offered) button.SetToolTip(text + ": " + result);
    if (i >= FrmImport::kFewAnswers) continue;
    form.Results().at(i)->SetVisible(offered && few);
    form.Results().at(i)->SetText(result);
  }
}

void ImportWindow::ShowBoxes(const BatchFile& file) {
  FrmImport& form = Window();
  const ImportOptions& options = file.options;
  const std::vector<FoundSeries>& series = file.understood.series;
  const bool open = task_ != Task::kImport && options.remember != Remember::kNothing;
  const std::size_t selected = Selected().size();
  const bool single = selected == 1 && series.size() <= 1;
  filling_ = true;
  form.fraBoxes.SetText(selected > 1 ? " Decide for " + Counted(selected, "file") + " "
                                     : " Decide ");
  const FoundSeries found = series.empty() ? FoundSeries() : series.front();
  form.txtSymbol.SetText(single ? options.symbol.value_or(found.symbol) : "");
  form.txtName.SetText(single ? options.name.value_or(found.name) : "");
  form.txtFrom.SetText(DayText(options.from));
  form.txtTo.SetText(DayText(options.to));
  form.cbxFromZone.SetText(options.from_zone.value_or(""));
  form.cbxToZone.SetText(options.to_zone.value_or(""));
  ChooseData(form.cbxInterval, options.interval.value_or(kAsInTheFile));
  ChooseData(form.cbxDates, options.date_order ? 1 + static_cast<int>(*options.date_order) : 0);
  ChooseData(form.cbxLong, static_cast<int>(options.too_long));
  form.chkAdjusted.SetChecked(options.prices == Prices::kAdjusted);
  form.chkReplace.SetChecked(options.replace);
  form.chkScale.SetChecked(options.scale > 1);
  form.chkScale.SetText(ScaleText(file));
  for (Control* control : form.Controls()) {
    if (control->Container() == &form.fraBoxes) control->SetEnabled(open);
  }
  for (TextBox* box : {&form.txtSymbol, &form.txtName}) box->SetEnabled(open && single);
  form.chkAdjusted.SetEnabled(open && HasAdjustedPrices(file.understood.format));
  form.chkScale.SetEnabled(open && (file.tradable_scale > 1 || options.scale > 1));
  filled_ = TypedTexts();
  filling_ = false;
}

void ImportWindow::ShowLines(const Understanding& understood) {
  const auto rows = std::make_shared<const std::vector<SampleRow>>(ShownRows(understood));
  const bool timed =
      std::ranges::any_of(*rows, [](const SampleRow& row) { return row.bar.time != 0; });
  Window().lstRows.SetContent({rows->size(),
                               [rows, timed](std::size_t row, std::size_t column) {
                                 return RowText(rows->at(row), column, timed);
                               },
                               [rows](std::size_t row) { return rows->at(row).text; },
                               {}});
}

void ImportWindow::ShowTask() {
  FrmImport& form = Window();
  const bool idle = task_ == Task::kNone;
  const std::size_t ready = batch_.Count(FileState::kReady);
  form.cmdImport.SetText(ready == 0 ? "&Import" : "&Import " + Counted(ready, "file"));
  form.cmdClose.SetText(idle ? "&Close" : "&Cancel");
  form.cmdClose.SetToolTip(idle ? "Closes the window (Esc)" : "Ends what is being done (Esc)");
  const bool here = chosen_ < batch_.Size() && batch_.At(chosen_).state == FileState::kAsks;
  form.cmdNext.SetVisible(batch_.Count(FileState::kAsks) > (here ? 1U : 0U));
  form.Progress.SetVisible(!idle);
  form.Progress.SetToolTip(idle ? "" : "How much is done");
  form.cmdImport.SetEnabled(idle && ready > 0);
}

void ImportWindow::ShowStatus(std::string_view text, bool problem) {
  Window().lblStatus.SetText(text);
  Window().lblStatus.SetForeColour(problem ? kRed : kDarkBlue);
}

std::string ImportWindow::SummaryText() const {
  std::string text;
  const auto add = [&](FileState state, std::string_view one, std::string_view several) {
    const std::size_t count = batch_.Count(state);
    if (count == 0) return;
    text += (text.empty() ? "" : " ") + Counted(count, "file") + " ";
    text += count == 1 ? one : several;
  };
  add(FileState::kReady, "can be imported.", "can be imported.");
  add(FileState::kAsks, "has a question.", "have a question.");
  add(FileState::kRefused, "cannot be imported.", "cannot be imported.");
  add(FileState::kNotRead, "was not read.", "were not read.");
  add(FileState::kImported, "was imported.", "were imported.");
  add(FileState::kFailed, "failed.", "failed.");
  return text;
}

}  // namespace velumar
