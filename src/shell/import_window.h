#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "forms/desktop.h"
#include "platform/platform.h"
#include "shell/import_batch.h"
#include "shell/import_boxes.h"
#include "shell/price_importer.h"

namespace velumar {

// What the controls of the import window do. Files are read and imported one after another while
// clicks run, so each of them may decide something, add files, cancel or close the window. Nothing
// in the market data directory changes before "Import".
class ImportWindow {
 public:
  struct Surroundings {
    // True while a replay runs or begins.
    std::function<bool()> replaying;
    // Called after an import with the first series that was stored.
    std::function<void(const FoundSeries& first)> imported;
  };

  ImportWindow(Desktop& desktop, Platform& platform, PriceImporter& importer,
               Surroundings surroundings);

  // Lists the price files among the paths, those of folders included, to be imported into a
  // directory, and opens the window. If it is open for the same directory, the files are added to
  // its batch; for another one it begins anew. If there are no price files, a box says so.
  void Offer(const std::vector<std::string>& paths, std::string_view directory);
  // Reads the files that were not read yet.
  void ReadFiles();
  // True while files are being imported.
  bool Importing() const { return task_ == Task::kImport; }
  void Close();

 private:
  enum class Task : std::uint8_t { kNone, kRead, kImport };

  void Load();
  void Stop();
  void Enter();

  void ReadFile(std::size_t file, int load);
  void Import();
  // Both return false if the import was cancelled or the window closed. The first adds what was
  // stored to the report.
  bool ImportReady(const std::vector<std::size_t>& ready, int load, ImportReport& stored);
  bool ImportFile(std::size_t file, const ImportProgress& progress);
  void EndTask();
  std::string ImportedText(const std::vector<std::size_t>& wanted,
                           const ImportReport& stored) const;
  // Runs pending clicks; the part that is done is that of one step of several.
  ImportProgress Progress(int load, std::size_t step, std::size_t steps);
  // False once the window has been closed, even if it is open again.
  bool Wanted(int load) const;

  // Applies a change to the options of the selected files and reads these again.
  void Decide(const ImportBoxes::Change& change);
  void ReadAgain();
  void Answer(std::size_t answer);
  void ChooseNextQuestion();
  void ChooseFile();
  void Select();
  // The selected files, or the chosen one.
  std::vector<std::size_t> Selected();

  void ShowList();
  void ShowFile();
  void ShowTask();
  void ShowStatus(std::string_view text, bool problem = false);
  FrmImport& Window() { return desktop_.Untouched().frmImport; }

  Desktop& desktop_;
  Platform& platform_;
  PriceImporter& importer_;
  Surroundings surroundings_;
  ImportBatch batch_;
  std::string directory_;
  int load_ = 0;  // how often the window was opened
  Task task_ = Task::kNone;
  bool cancelled_ = false;    // the trader has cancelled the task
  int importing_ = 0;         // until an import ends, even if its window is closed
  bool interrupted_ = false;  // what is being read has new options
  std::size_t chosen_ = 0;    // the file that is shown
  bool chose_ = false;        // the trader has chosen it
  bool selecting_ = false;    // not the trader, but this class selects a file
  ImportBoxes boxes_;
};

}  // namespace velumar
