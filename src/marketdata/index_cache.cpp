#include "marketdata/index_cache.h"

namespace velumar {

struct IndexCache::Entries {};

IndexCache::IndexCache() : entries_(std::make_unique<Entries>()) {}
IndexCache::~IndexCache() = default;

}  // namespace velumar
