#include "shell/import_window.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <utility>

#include "base/paths.h"
#include "base/scoped_counter.h"
#include "import/wording.h"
#include "shell/batch_texts.h"
#include "shell/event_guard.h"
#include "shell/import_file_view.h"
#include "shell/window_shaping.h"

namespace velumar {

namespace {

constexpr std::string_view kPriceFiles =
    "Only price files can be imported: .csv, .txt, .tsv, .prn, .zip and .gz.";

}  // namespace

ImportWindow::ImportWindow(Desktop& desktop, Platform& platform, PriceImporter& importer,
                           Surroundings surroundings)
    : desktop_(desktop),
      platform_(platform),
      importer_(importer),
      surroundings_(std::move(surroundings)),
      boxes_(desktop.Untouched().frmImport, platform,
             {[this] { return task_ != Task::kImport; },
              [this](const ImportBoxes::Change& change) { Decide(change); },
              [this](const std::string& why) { ShowStatus(why, true); }}) {
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
    form.Answers().at(i)->on_click = guarded("Reading the file again", [this, i] { Answer(i); });
  }
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
                            {"Bars", true, 960},
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
  boxes_.Load();
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
  if (boxes_.HasTyped()) return boxes_.TakeTypedTexts();
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
  Window().lstFiles.Refresh();
  const bool asks = chosen_ < batch_.Size() && batch_.At(chosen_).state == FileState::kAsks;
  if (!chose_ && !asks && batch_.Count(FileState::kAsks) > 0) ChooseNextQuestion();
  ShowUnderstood(Window(), batch_, chosen_, Importing());
  ShowTask();
  ShowStatus(SummaryText(batch_));
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
  // The window was closed during an import, and opened again before that has ended.
  if (importing_ > 0) return ShowStatus("The import before is still ending. Try again.", true);
  const int load = load_;
  const std::vector<std::size_t> ready = batch_.In(FileState::kReady);
  ImportReport stored;
  bool whole = false;
  try {
    whole = ImportReady(ready, load, stored);
  } catch (...) {
    if (Wanted(load)) EndTask();
    throw;
  }
  if (Wanted(load)) {
    EndTask();
    if (batch_.Count(FileState::kAsks) > 0 && batch_.At(chosen_).state != FileState::kAsks) {
      ChooseNextQuestion();
    }
    ShowStatus((whole ? "" : "Cancelled. ") + ImportedText(ready, stored));
  }
  if (!stored.series.empty() && desktop_.Untouched().form1.Loaded()) {
    surroundings_.imported(stored.series.front().found);
  }
  if (Wanted(load)) ReadFiles();  // files may have been dropped since
}

bool ImportWindow::ImportReady(const std::vector<std::size_t>& ready, int load,
                               ImportReport& stored) {
  const ScopedCounter importing(importing_);
  task_ = Task::kImport;
  cancelled_ = interrupted_ = false;
  ShowTask();
  ShowFile();
  importer_.BeginImport(directory_, [&](ImportedFile file) {
    std::ranges::copy_if(file.report.series, std::back_inserter(stored.series),
                         [](const ImportedSeries& series) { return series.error.empty(); });
    if (!Wanted(load)) return;
    batch_.TakeImported(std::move(file));
    Window().lstFiles.Refresh();
  });
  bool whole = true;
  try {
    for (std::size_t i = 0; i < ready.size() && whole; ++i) {
      ShowStatus("Importing " + std::to_string(i + 1) + " of " + std::to_string(ready.size()) +
                 ": " + PathText(batch_.At(ready[i]).path.filename()));
      whole = ImportFile(ready[i], Progress(load, i, ready.size())) && Wanted(load);
    }
  } catch (...) {
    importer_.FinishImport();  // the files before it are imported
    throw;
  }
  importer_.FinishImport();
  return whole;
}

void ImportWindow::EndTask() {
  task_ = Task::kNone;
  ShowTask();
  ShowFile();
}

bool ImportWindow::ImportFile(std::size_t file, const ImportProgress& progress) {
  // Copies: files may be dropped during the import.
  const std::filesystem::path path = batch_.At(file).path;
  const ImportOptions options = batch_.At(file).options;
  try {
    if (!progress(0)) return false;
    importer_.Import(path, options, progress);
    return true;
  } catch (const ImportCancelled&) {
    return false;
  }
}

std::string ImportWindow::ImportedText(const std::vector<std::size_t>& wanted,
                                       const ImportReport& stored) const {
  const auto imported = std::ranges::count_if(
      wanted, [this](std::size_t file) { return batch_.At(file).state == FileState::kImported; });
  std::string text =
      "Imported " + std::to_string(imported) + " of " + Counted(wanted.size(), "file");
  if (imported > 0) text += ": " + ReportText(stored);
  const std::size_t asking = batch_.Count(FileState::kAsks);
  if (asking > 0)
    text += ". " + Counted(asking, "file") + (asking == 1 ? " has" : " have") + " a question";
  return text + ".";
}

std::vector<std::size_t> ImportWindow::Selected() {
  const std::vector<std::size_t>& selected = Window().lstFiles.Selected();
  return selected.empty() ? std::vector<std::size_t>{chosen_} : selected;
}

void ImportWindow::Decide(const ImportBoxes::Change& change) {
  if (batch_.Size() == 0) return;
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
  if (selecting_ || selected.empty()) return;
  chose_ = true;
  if (std::ranges::count(selected, chosen_) == 0) chosen_ = selected.front();
  ShowFile();
  ShowTask();
}

void ImportWindow::Select() {
  selecting_ = true;
  Window().lstFiles.Select({chosen_});
  selecting_ = false;
  ShowFile();
  ShowTask();
}

void ImportWindow::ShowList() {
  Window().lstFiles.SetContent(
      {batch_.Size(),
       [this](std::size_t row, std::size_t column) { return BatchCell(batch_, row, column); },
       [this](std::size_t row) { return BatchTip(batch_, row); },
       [this](std::size_t row) { return BatchInk(batch_.At(row).state); }});
  Select();
}

void ImportWindow::ShowFile() {
  ShowUnderstood(Window(), batch_, chosen_, Importing());
  boxes_.Show(batch_.At(chosen_), Selected().size());
  ShowLines(Window(), batch_.At(chosen_).understood);
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

}  // namespace velumar
