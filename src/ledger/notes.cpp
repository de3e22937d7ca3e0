#include "ledger/notes.h"

#include <filesystem>
#include <system_error>

#include "base/paths.h"
#include "platform/journal_picture.h"

namespace velumar {

void LedgerWriteNote(LedgerConnection& connection, const LedgerNote& note) {
  connection.ForWriting().Run(
      "INSERT INTO Notes (Session, Run, Place, Note, Written) VALUES (?, ?, ?, ?, ?)",
      {double(note.session), double(note.order.run), double(note.order.place), note.text,
       note.written});
}

std::vector<LedgerNote> LedgerNotes(LedgerConnection& connection) {
  const SqliteDatabase& database = connection.ForReading();
  std::vector<LedgerNote> notes;
  if (!database.HasTable("Notes")) return notes;
  SqliteStatement select =
      database.Prepare("SELECT Session, Run, Place, Note, Written FROM Notes ORDER BY Id");
  const auto whole = [&select](int column) { return select.Whole(column); };
  while (select.Step()) {
    notes.push_back(
        {whole(0), {whole(1), whole(2)}, std::string(select.Text(3)), std::string(select.Text(4))});
  }
  return notes;
}

std::string LedgerPictureFile(const LedgerConnection& connection, const LedgerOrderKey& order) {
  if (order.place == 0 || connection.File() == kInMemory) return {};
  std::error_code none;
  const auto ledger = std::filesystem::absolute(NativePath(connection.File()), none);
  return PathText(JournalPicture(ledger, order.run, order.place));
}

}  // namespace velumar
