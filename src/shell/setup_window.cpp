#include "shell/setup_window.h"

#include <filesystem>
#include <optional>

#include "base/ignoring.h"
#include "base/number_text.h"
#include "base/paths.h"
#include "base/text.h"
#include "marketdata/interval.h"
#include "platform/chart_program.h"
#include "results/figure_texts.h"
#include "results/run_record.h"
#include "session/delay.h"
#include "shell/cards_page.h"
#include "shell/event_guard.h"
#include "shell/window_shaping.h"
#include "trading/status_texts.h"

namespace velumar {

namespace {

constexpr std::string_view kTitle = "Velumar";
constexpr std::string_view kVersion = VELUMAR_VERSION;
constexpr std::string_view kBuild = "20071018";
constexpr int kSetupOpacity = 250;

// A pressed picture moves by a pixel.
void Shift(Control& picture, float twips) {
  picture.SetPlace(picture.Left() + twips, picture.Top() + twips);
}

// Next to the program in a build folder; with the documentation if installed.
std::string SupportPage(const std::string& program_folder) {
  const std::filesystem::path folder = NativePath(program_folder);
  const std::filesystem::path built = folder / "support.html";
  if (std::filesystem::exists(built)) return PathText(built);
  return PathText((folder / "../share/doc/velumar/support.html").lexically_normal());
}

}  // namespace

SetupWindow::SetupWindow(SimSession& session, RunView& view, Desktop& desktop, Platform& platform,
                         SymbolCatalogue& catalogue, ImportWindow& import, RunControl& run,
                         TradePanel& panel, AccountBoxes& account, ChartRegistry& registry,
                         LedgerConnection& ledger, IndexCache& cache)
    : session_(session),
      view_(view),
      desktop_(desktop),
      platform_(platform),
      catalogue_(catalogue),
      import_(import),
      run_(run),
      panel_(panel),
      account_(account),
      registry_(registry),
      ledger_(ledger),
      start_(session, desktop, platform, catalogue, cache) {
  Form1& form = desktop_.Untouched().form1;
  const EventGuard guarded(platform_.boxes);
  form.on_load = guarded("Opening the setup", [this] { Load(); });
  form.on_unload = guarded("Saving the settings", [this] { Unload(); });
  form.on_close = guarded("Closing Velumar", [this] { Close(); });
  form.on_press = form.Image12.on_press =
      guarded("Moving the setup", [this] { Window().StartDrag(); });
  form.on_drop = guarded("Importing the price files",
                         [this](const std::vector<std::string>& files) { TakeFiles(files); });
  form.Text3.on_change = guarded("Changing the data directory", [this] { DirectoryChanged(); });
  form.Text3.on_key_up = guarded("Listing the securities", [this](int key) {
    if (key == kEnterKey) ListSecurities();
  });
  form.Command5.on_click = guarded("Choosing the data directory", [this] {
    if (catalogue_.PickDataDirectory()) ListSecurities();
  });
  account_.BindEvents();
  form.Combo1.on_click = guarded("Choosing the security", [this] {
    catalogue_.SymbolChosen();
    start_.KeepDateInSeries();
  });
  form.Combo1.on_key_up = guarded("Choosing the security", [this](int key) {
    catalogue_.SymbolTyped();
    // What is typed so far may be another symbol.
    if (key == kEnterKey) start_.KeepDateInSeries();
  });
  for (PictureButton* button : {&form.Image3, &form.Image5}) {
    button->on_press = [button] { Shift(*button, kTwipsPerPixel); };
    button->on_release = [button] { Shift(*button, -kTwipsPerPixel); };
  }
  start_.BindEvents();
  form.Image3.on_click = guarded("Starting the run", [this] { StartRun(); });
  // The project's own page, or the one that a setting names.
  form.ImgDonate.on_click = guarded("Opening the support page", [this] {
    platform_.programs.OpenInBrowser(
        platform_.settings.Read("DonateUrl").value_or(SupportPage(platform_.program_folder)));
  });
  form.Image5.on_click = guarded("Closing Velumar", [this] { Close(); });
}

// A step that fails is skipped, so that the window opens whatever is wrong with the settings or the
// directory.
void SetupWindow::Load() {
  IgnoringErrors([this] { ShapeAndName(); });
  session_.Symbol = Setting("Symbol", "");
  session_.SetupTop = Setting("Top", "0");
  session_.SetupLeft = Setting("Left", "0");
  IgnoringErrors([this] { PlaceWindows(); });
  IgnoringErrors([this] { start_.ReadDate(); });
  IgnoringErrors([this] { FillDelay(); });
  IgnoringErrors([this] { OpenDataDirectory(); });
  start_.LetDateFollow();
  if (!desktop_.Untouched().form1.Loaded()) return;  // quit instead of choosing a directory
  session_.SimDir =
      platform_.store_dir.empty() ? session_.DataDir + "\\Simulate" : platform_.store_dir;
  if (session_.Symbol.empty()) session_.Symbol = "SET";
  session_.BarIndex = 0;
  account_.GroupTexts();
  Window().Label6.SetVisible(false);
  IgnoringErrors([this] {
    const std::filesystem::path store = NativePath(session_.SimDir);
    if (!std::filesystem::exists(store)) std::filesystem::create_directory(store);
  });
  Window().Show();
  // Clicks run while it slides in, but no run may begin before the ledger is open.
  loading_ = true;
  IgnoringErrors([this] { SlideIn(Window(), session_.SetupTop, session_.SetupLeft, platform_); });
  loading_ = false;
  OpenLedger();
  ShowDueCards(desktop_, platform_, ledger_);
  import_.ReadFiles();
}

void SetupWindow::ListSecurities() {
  catalogue_.BuildSymbolList();
  start_.SecuritiesListed();
  import_.ReadFiles();
}

void SetupWindow::ShapeAndName() {
  Form1& form = Window();
  ShapeSmallWindow(form);
  form.SetOpacity(kSetupOpacity);
  form.lblPercentComm.SetVisible(false);
  form.ImgDonate.SetVisible(false);
  form.SetCaption(std::string(kTitle) + std::string(kVersion) + " build " + std::string(kBuild));
  form.Label5.SetText(kTitle);
  form.Label8.SetText("version " + std::string(kVersion));
  form.Image12.SetSize(form.Width(), form.Height());
}

void SetupWindow::PlaceWindows() {
  Form1& form = Window();
  if (CanRestorePlace(session_.SetupTop, session_.SetupLeft, form, platform_.screen)) {
    form.SetTop(PlaceFromText(session_.SetupTop));
    form.SetLeft(PlaceFromText(session_.SetupLeft));
    desktop_.form2();  // takes its saved place, or its first one, as it loads
    return;
  }
  Form2& navigator = desktop_.form2();
  PlaceSetupFirst(form, platform_.screen);
  PlaceNavigatorFirst(navigator, platform_.screen);
  session_.SetupTop = PlaceText(form.Top());
  session_.SetupLeft = PlaceText(form.Left());
  session_.NavTop = PlaceText(navigator.Top());
  session_.NavLeft = PlaceText(navigator.Left());
}

void SetupWindow::FillDelay() {
  constexpr int kTenSeconds = 7;
  constexpr int kThirdItem = 2;
  // This loads the panel, which starts the account.
  ComboBox& delay = desktop_.form3().Combo2;
  delay.SetIndex(kTenSeconds);
  Window().cbxPeriod.SetIndex(kThirdItem);
  const std::string kept = Setting("Refresh", "3");
  delay.SetText(DelayMilliseconds(kept) == 0 ? "3" : UsableDelay(kept));
  session_.RefreshDelay = DelayMilliseconds(delay.Text());
}

void SetupWindow::OpenDataDirectory() {
  session_.DataDir = Setting("LastPath", platform_.default_data_dir);
  TextBox& box = Window().Text3;
  const bool unchanged = box.Text() == session_.DataDir;
  box.SetText(session_.DataDir);
  Save("LastPath", session_.DataDir);
  // Without a change event, the market in the path still counts.
  if (unchanged) DirectoryChanged();
  session_.HostTitle = kChartTitle;
  catalogue_.BuildSymbolList();
}

// Without a ledger a run replays; its orders then show the reason.
void SetupWindow::OpenLedger() {
  LedgerOpen(ledger_, platform_.ledger_file);
  Window().imgGraph.SetToolTip("Results. Ledger: " + platform_.ledger_file);
  if (!ledger_.CanWrite()) {
    platform_.boxes.Show("Orders can't be placed. " + ledger_.WhyNot(), BoxIcon::kExclamation);
  }
}

void SetupWindow::DirectoryChanged() {
  session_.DataDir = Window().Text3.Text();
  Save("LastPath", session_.DataDir);
  account_.DirectoryChanged();
}

void SetupWindow::TakeFiles(const std::vector<std::string>& files) {
  if (run_.Feeding() || session_.Preparing) {
    return platform_.boxes.Show("Pause the replay before importing price files.",
                                BoxIcon::kInformation);
  }
  import_.Offer(files, session_.DataDir);
  import_.ReadFiles();
}

// Clicks run during the slides, so the run counts as being prepared from here on. No security is
// chosen yet while the list is being built. An import is done or closed first.
bool SetupWindow::CanStart() const {
  return !loading_ && !session_.Preparing && !catalogue_.Building() && !import_.Importing();
}

void SetupWindow::StartRun() {
  if (!CanStart()) return;
  if (const auto problem = account_.Problem()) {
    return platform_.boxes.Show(*problem, BoxIcon::kExclamation);
  }
  if (run_.ClaimStore()) BeginRun();
}

bool SetupWindow::ReadyForSession() const {
  const bool listing = catalogue_.Building();
  if (desktop_.Untouched().frmCard.Loaded()) {
    platform_.boxes.Show("Close the card first.", BoxIcon::kInformation);
    return false;
  }
  if (!listing && !import_.Importing()) return CanStart();
  platform_.boxes.Show(listing ? "A session can be played once the list of securities is ready."
                               : "A session can be played once the import has ended.",
                       BoxIcon::kInformation);
  return false;
}

void SetupWindow::ResumeSession(int number) {
  if (!ReadyForSession()) return;
  const std::optional<NextRun> choice = run_.Chooser().Session(number);
  if (choice && Resume(*choice)) ShowQuantityOf(number);
}

// As traders left it: a run starts with the market's own quantity.
void SetupWindow::ShowQuantityOf(int session) {
  IgnoringErrors([&] {
    const std::vector<RunOrder> orders = ReadRecord(ledger_, LedgerScope::Session(session)).orders;
    if (orders.empty() || !orders.back().quantity) return;
    desktop_.Untouched().form3.txtContractVol.SetText(
        PatternText(QuantityText(*orders.back().quantity), kWholePattern));
  });
}

void SetupWindow::PlayAgain(const LedgerOrderKey& entry) {
  if (!ReadyForSession()) return;
  const std::optional<NextRun> choice = run_.Chooser().Trade(entry);
  if (!choice) return;
  const Form2& navigator = desktop_.Untouched().form2;
  if (navigator.Visible()) {
    navigator.on_close();
    const bool holds = session_.LAccum > 0 || session_.SAccum > 0;
    if (holds && run_.Feeding() && session_.StopRequested == 0) return;  // it is kept going
    // Clicks ran while the windows slid.
    if (navigator.Visible() || !ReadyForSession()) return;
  }
  Resume(*choice);
}

bool SetupWindow::PlayDrawn(int bars) {
  if (!ReadyForSession()) return false;
  if (const auto problem = account_.Problem()) {
    platform_.boxes.Show(*problem, BoxIcon::kExclamation);
    return false;
  }
  const std::optional<NextRun> choice = run_.Chooser().Drawn(bars);
  return choice && run_.Claim(*choice) && BeginRun();
}

bool SetupWindow::Resume(const NextRun& choice) {
  Enter(choice.resumed->session);
  if (!run_.Claim(choice)) return false;
  BeginRun();
  ShowStatus(session_, view_, platform_.locale);
  return true;
}

void SetupWindow::Enter(const LedgerSession& session) {
  Form1& form = Window();
  form.Text3.SetText(session.directory);
  DirectoryChanged();
  form.chkBlind.SetChecked(!session.mask.empty());
  if (session.mask.empty()) {
    catalogue_.ListAndChoose(session.symbol, IntervalFromText(session.interval).value_or(0));
    form.DTPicker1.SetValue(session.start_day);
  } else {
    ListSecurities();
    form.cbxPeriod.SetText(session.interval);
  }
  const LedgerAccount& account = session.account;
  form.txtInitPorfolio.SetText(account.money);
  form.txtContractValue.SetText(account.margin);
  form.txtProfitperContract.SetText(account.money_per_point);
  form.txtcomm.SetText(account.commission);
  form.txtVAT.SetText(account.vat);
}

bool SetupWindow::BeginRun() {
  import_.Close();
  desktop_.Unload(desktop_.Untouched().frmPractice);
  desktop_.Unload(desktop_.Untouched().frmDrill);
  bool ready = false;
  IgnoringErrors([&] {
    const PreparingScope preparing(session_);
    ready = desktop_.Untouched().form2.Visible() || SlideToRun();
    if (ready) panel_.ShowForRun();
  });
  if (!ready) {
    view_.UnlockSetup();
    return false;
  }
  if (run_.Start()) return true;
  const Form2& navigator = desktop_.Untouched().form2;
  if (navigator.Visible()) navigator.on_close();
  return false;
}

// Returns false if the trader went back to the setup during a slide.
bool SetupWindow::SlideToRun() {
  Form1& form = Window();
  Save("Top", PlaceText(form.RestTop()));
  Save("Left", PlaceText(form.Left()));
  SlideOut(form, platform_);
  form.Hide();
  Form2& navigator = desktop_.form2();
  navigator.Show();
  IgnoringErrors([&] { SlideIn(navigator, session_.NavTop, session_.NavLeft, platform_); });
  return navigator.Visible();
}

void SetupWindow::Unload() {
  // What a blind run plays isn't a choice to come back to.
  if (session_.Symbol != kBlindSymbol) Save("Symbol", session_.Symbol);
  Save("Refresh", DelayToSave());
  // During a run the window is below the screen; its place was saved at the start.
  if (Window().Visible()) {
    Save("Top", PlaceText(Window().RestTop()));
    Save("Left", PlaceText(Window().Left()));
  }
  start_.SaveDate();
  const std::string directory = Trimmed(Window().Text3.Text());
  registry_.SaveDataFolder(directory);
  registry_.SaveChartsFolder(directory);
  LedgerClose(ledger_);
}

// Between two runs the panel is closed, or opened again with an empty box.
std::string SetupWindow::DelayToSave() const {
  const Form3& panel = desktop_.Untouched().form3;
  const bool typed = panel.Loaded() && !panel.Combo2.Text().empty();
  return typed ? panel.Combo2.Text() : DelaySeconds(session_.RefreshDelay);
}

void SetupWindow::Close() {
  desktop_.Unload(Window());
  panel_.SaveBigPlaces();
  platform_.programs.EndProcess();
}

std::string SetupWindow::Setting(std::string_view key, std::string_view otherwise) const {
  return platform_.settings.Read(key).value_or(std::string(otherwise));
}

void SetupWindow::Save(std::string_view key, std::string_view text) {
  platform_.settings.Save(key, text);
}

}  // namespace velumar
