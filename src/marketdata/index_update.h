#pragma once

#include <functional>

#include "marketdata/index_entries.h"

namespace velumar {

// Changes the records of `security` in the index files that list it, each in its place, and lets
// the cache know. `change` gets the bytes of one record; what it leaves alone is not written. A
// record that is not this security's any more, since another program changed the file, stays.
void UpdateIndexRecords(IndexCache::Entries& cache, const DirectoryIndex& index,
                        const IndexedSecurity& security,
                        const std::function<void(IndexKind, ByteSpan)>& change);

}  // namespace velumar
