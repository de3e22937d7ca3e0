#include "shell/preview_window.h"

#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "shell/event_guard.h"
#include "shell/window_shaping.h"

namespace velumar {

namespace {

constexpr std::string_view kPreview = "The print preview";
constexpr int kStartZoom = 50;
constexpr double kSmallestPercent = 25;  // of the bars that size the chart

float Twips(double length) { return static_cast<float>(length); }

std::int32_t WholeTwips(double length) { return static_cast<std::int32_t>(std::lround(length)); }

}  // namespace

PreviewWindow::PreviewWindow(Desktop& desktop, Platform& platform)
    : desktop_(desktop), platform_(platform) {
  Graph2& form = desktop_.Untouched().graph2;
  const EventGuard guarded(platform_.boxes);
  form.on_load = guarded(kPreview, [this] { Load(); });
  form.on_close = form.on_escape = form.cmdcancel.on_click = guarded(kPreview, [this] { Close(); });
  form.cmdPrint.on_click = guarded("Printing", [this] { Print(); });
  form.HScroll2.on_change = guarded(kPreview, [this] { ApplyZoom(); });
  form.chtscroll0.on_change =
      guarded(kPreview, [this] { SetChartHeight(Window().chtscroll0.Value()); });
  form.chtscroll1.on_change =
      guarded(kPreview, [this] { SetChartWidth(Window().chtscroll1.Value()); });
  form.HScroll1.on_change = form.VScroll1.on_change = guarded(kPreview, [&form] {
    constexpr int kAcross = -400;
    constexpr int kDown = -900;
    form.Picture1.SetPlace(static_cast<float>(kAcross * form.HScroll1.Value()),
                           static_cast<float>(kDown * form.VScroll1.Value()));
  });
  form.Picture2.on_mouse_down = [this](float x, float y) {
    page_.dragging = true;
    page_.drag_start = {x, y};
  };
  form.Picture2.on_mouse_move = [this](float x, float y) { MoveChart(x, y); };
  form.Picture2.on_mouse_up = [this](float x, float y) { DropChart(x, y); };
  form.op1.on_entry =
      guarded(kPreview, [this](std::size_t list, std::size_t entry) { ChooseEntry(list, entry); });
}

void PreviewWindow::Load() {
  Graph2& form = Window();
  form.SetTopmost(true);
  CentreOnScreen(form, platform_.screen);
  page_ = {};
  form.HScroll2.SetValue(kStartZoom);  // zooms
}

// A result window that was only opened for the preview closes with it, so that the next one reads
// the ledger again.
void PreviewWindow::Close() {
  desktop_.Unload(Window());
  const FrmResult& results = desktop_.Untouched().frmResult;
  if (results.Loaded() && !results.Visible()) desktop_.Unload(desktop_.frmResult());
}

void PreviewWindow::ApplyZoom() {
  constexpr Point kPortraitSheet = {12000, 17000};
  Graph2& form = Window();
  FrmResult& results = desktop_.frmResult();
  const double zoom = Zoom();
  Point sheet = {zoom * kPortraitSheet.x, zoom * kPortraitSheet.y};
  if (!page_.portrait) std::swap(sheet.x, sheet.y);
  form.Label1.SetText(std::to_string(form.HScroll2.Value()) + "%");
  form.Picture1.SetSize(Twips(sheet.x), Twips(sheet.y));
  page_.chart_size = {zoom * results.full_width, zoom * results.full_height};
  results.MSChart1.SetSize(Twips(page_.chart_size.x), Twips(page_.chart_size.y));
  form.Picture2.SetPlace(Twips(zoom * page_.chart_at_drop.x / page_.zoom_at_drop),
                         Twips(zoom * page_.chart_at_drop.y / page_.zoom_at_drop));
  TakePicture();
}

void PreviewWindow::SetChartHeight(int percent) {
  FrmResult& results = desktop_.frmResult();
  const double height = percent / kSmallestPercent * page_.chart_size.y;
  results.MSChart1.SetSize(results.MSChart1.Width(), Twips(height));
  results.full_height = WholeTwips(height / Zoom());
  TakePicture();
}

void PreviewWindow::SetChartWidth(int percent) {
  FrmResult& results = desktop_.frmResult();
  const double width = percent / kSmallestPercent * page_.chart_size.x;
  results.MSChart1.SetSize(Twips(width), results.MSChart1.Height());
  results.full_width = WholeTwips(width / Zoom());
  TakePicture();
}

void PreviewWindow::TakePicture() {
  const Chart& shown = desktop_.frmResult().MSChart1;
  ChartPicture& picture = Window().Picture2;
  picture.SetSize(shown.Width(), shown.Height());
  picture.SetContent(shown.Content());
}

void PreviewWindow::MoveChart(float x, float y) {
  if (!page_.dragging) return;
  ChartPicture& picture = Window().Picture2;
  picture.SetPlace(Twips(double{picture.Left()} + x - page_.drag_start.x),
                   Twips(double{picture.Top()} + y - page_.drag_start.y));
}

void PreviewWindow::DropChart(float x, float y) {
  if (!page_.dragging) return;
  MoveChart(x, y);
  page_.dragging = false;
  page_.chart_at_drop = {Window().Picture2.Left(), Window().Picture2.Top()};
  page_.zoom_at_drop = Zoom();
}

void PreviewWindow::ChooseEntry(std::size_t list, std::size_t entry) {
  Graph2& form = Window();
  switch (list) {
    case Graph2::kOrientation:
      page_.portrait = !page_.portrait;
      form.Picture1.SetSize(form.Picture1.Height(), form.Picture1.Width());
      return form.op1.Tick(list, entry, page_.portrait);
    case Graph2::kPrintQuality:
      page_.quality = static_cast<int>(entry);
      return form.op1.TickOnly(list, entry);
    case Graph2::kNoOfCopies:
      page_.copies = static_cast<int>(entry) + 1;
      return form.op1.TickOnly(list, entry);
    default:
      return;  // the paper is always A4
  }
}

void PreviewWindow::Print() {
  Graph2& form = Window();
  form.HScroll2.SetValue(Graph2::kPercent.high);
  PrintJob job{.orientation = page_.portrait ? 1 : 2,
               .quality = -2 - page_.quality,
               .copies = page_.copies,
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
