#pragma once

#include <cstddef>

#include "forms/frm_import.h"
#include "shell/import_batch.h"

namespace velumar {

// What the import window shows of one file: what was understood of it, or its first question with
// the answers, which are disabled while files are imported.
void ShowUnderstood(FrmImport& form, const ImportBatch& batch, std::size_t file, bool importing);
// The first and last lines of the file next to the bars that were read from them; of a file without
// bars, its first lines.
void ShowLines(FrmImport& form, const Understanding& understood);

}  // namespace velumar
