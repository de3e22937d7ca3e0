#include "shell/preview_window.h"

#include <string>
#include <string_view>

#include "shell/event_guard.h"
#include "shell/window_shaping.h"

namespace velumar {

namespace {

float Twips(double length) { return static_cast<float>(length); }

constexpr std::string_view kPreview = "The print preview";

}  // namespace

PreviewWindow::PreviewWindow(Desktop& desktop, Platform& platform)
    : desktop_(desktop), platform_(platform) {
  BindEvents();
}

void PreviewWindow::BindEvents() {
  Graph2& form = desktop_.Untouched().graph2;
  const EventGuard guarded(platform_.boxes);
  // Changes the sheet and shows the change.
  const auto changing = [this, guarded](auto change) {
    return guarded(kPreview, [this, change](auto... arguments) {
      change(arguments...);
      ShowPlaces();
    });
  };
  const auto resizing = [this, changing](auto change) {
    return changing([this, change] { Resize(change); });
  };
  form.on_load = guarded(kPreview, [this] { Load(); });
  form.on_close = form.on_escape = form.cmdcancel.on_click = guarded(kPreview, [this] { Close(); });
  form.cmdPrint.on_click = guarded("Printing", [this] { Print(); });
  form.HScroll2.on_change =
      resizing([this](PreviewChart& chart) { preview_.SetZoom(Window().HScroll2.Value(), chart); });
  form.chtscroll0.on_change = resizing([this](PreviewChart& chart) {
    preview_.SetChartPercent(PictureSide::kHeight, Window().chtscroll0.Value(), chart);
  });
  form.chtscroll1.on_change = resizing([this](PreviewChart& chart) {
    preview_.SetChartPercent(PictureSide::kWidth, Window().chtscroll1.Value(), chart);
  });
  form.HScroll1.on_change = form.VScroll1.on_change = changing(
      [this] { preview_.ScrollSheet(Window().HScroll1.Value(), Window().VScroll1.Value()); });
  form.Picture2.on_mouse_down = changing([this](float x, float y) { preview_.Press({x, y}); });
  form.Picture2.on_mouse_move = changing([this](float x, float y) { preview_.Move({x, y}); });
  form.Picture2.on_mouse_up = changing([this](float x, float y) { preview_.Release({x, y}); });
  form.op1.on_entry =
      changing([this](std::size_t list, std::size_t entry) { ChooseEntry(list, entry); });
}

void PreviewWindow::Load() {
  Graph2& form = Window();
  form.SetTopmost(true);
  CentreOnScreen(form, platform_.screen);
  preview_ = {};
  Resize([this](PreviewChart& chart) { preview_.Show(chart); });
  form.HScroll2.SetValue(PrintPreview::kStartZoom);  // takes the picture and shows the places
}

// A result window that was only opened for the preview closes with it, so that the next one reads
// the ledger again.
void PreviewWindow::Close() {
  desktop_.Unload(Window());
  const FrmResult& results = desktop_.Untouched().frmResult;
  if (results.Loaded() && !results.Visible()) desktop_.Unload(desktop_.frmResult());
}

void PreviewWindow::ShowPlaces() {
  Graph2& form = Window();
  form.Label1.SetText(std::to_string(preview_.ZoomPercent()) + "%");
  form.Picture1.SetPlace(Twips(preview_.SheetPlace().x), Twips(preview_.SheetPlace().y));
  form.Picture1.SetSize(Twips(preview_.Sheet().width), Twips(preview_.Sheet().height));
  form.Picture2.SetPlace(Twips(preview_.ChartPlace().x), Twips(preview_.ChartPlace().y));
}

void PreviewWindow::Resize(const std::function<void(PreviewChart&)>& change) {
  FrmResult& results = desktop_.frmResult();
  Chart& shown = results.MSChart1;
  PreviewChart chart{{double{shown.Width()}, double{shown.Height()}}, results.chwd, results.chht};
  change(chart);
  shown.SetSize(Twips(chart.shown.width), Twips(chart.shown.height));
  results.chwd = chart.whole_width;
  results.chht = chart.whole_height;
  ChartPicture& picture = Window().Picture2;
  picture.SetSize(shown.Width(), shown.Height());
  picture.SetContent(shown.Content());
}

void PreviewWindow::ChooseEntry(std::size_t list, std::size_t entry) {
  Menu& menu = Window().op1;
  switch (list) {
    case Graph2::kOrientation:
      preview_.ToggleOrientation();
      return menu.Tick(list, entry, preview_.Portrait());
    case Graph2::kPrintQuality:
      preview_.SetQuality(static_cast<int>(entry));
      return menu.TickOnly(list, entry);
    case Graph2::kNoOfCopies:
      preview_.SetCopies(static_cast<int>(entry) + 1);
      return menu.TickOnly(list, entry);
    default:
      return;  // the paper is always A4
  }
}

void PreviewWindow::Print() {
  Graph2& form = Window();
  form.HScroll2.SetValue(PrintPreview::kMostPercent);
  PrintJob job{.orientation = preview_.PrintOrientation(),
               .quality = preview_.PrintQualityCode(),
               .copies = preview_.NoOfCopies(),
               .pdf_file = {}};
  if (!platform_.printers.Any()) {
    const auto file =
        platform_.files.ChooseFile({{"No printer: save the page (*.pdf)", "pdf"}}, "Portfolio");
    if (!file || file->empty()) return;
    job.pdf_file = *file;
  }
  form.Picture2.PrintPages(job);
  platform_.boxes.Show("bbb", BoxIcon::kNone);
}

}  // namespace velumar
