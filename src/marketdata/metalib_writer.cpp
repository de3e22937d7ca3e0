#include "marketdata/metalib_writer.h"

#include "marketdata/metalib_error.h"

namespace velumar {

namespace {
[[noreturn]] void NotBuilt() { throw MetaLibError(MetaLibError::kNotOpen, "not built yet"); }
}  // namespace

struct MetaLibWriter::State {};

MetaLibWriter::MetaLibWriter(IndexCache&) : state_(std::make_unique<State>()) {}
MetaLibWriter::~MetaLibWriter() = default;

bool MetaLibWriter::IsDirectoryInUse(std::string_view) const { NotBuilt(); }
void MetaLibWriter::OpenDirectory(std::string_view) { NotBuilt(); }
void MetaLibWriter::CloseDirectory() { NotBuilt(); }
bool MetaLibWriter::SecurityExists(std::string_view) const { NotBuilt(); }
void MetaLibWriter::SelectSeries(std::string_view, int, int) { NotBuilt(); }
void MetaLibWriter::CloseSecurity() { NotBuilt(); }
void MetaLibWriter::WriteSeries(const std::vector<std::int32_t>&, const std::vector<std::int32_t>&,
                                const std::vector<float>&, const std::vector<float>&,
                                const std::vector<float>&, const std::vector<float>&,
                                const std::vector<float>&, const std::vector<float>&) {
  NotBuilt();
}
void MetaLibWriter::AppendBar(std::int32_t, std::int32_t, float, float, float, float, float,
                              float) {
  NotBuilt();
}
bool MetaLibWriter::DailyBarExists(std::int32_t) { NotBuilt(); }
bool MetaLibWriter::IntradayBarExists(std::int32_t, std::int32_t) { NotBuilt(); }
void MetaLibWriter::DeleteDailyBar(std::int32_t) { NotBuilt(); }
void MetaLibWriter::DeleteIntradayBar(std::int32_t, std::int32_t) { NotBuilt(); }
void MetaLibWriter::DeleteDateRange(std::int32_t, std::int32_t) { NotBuilt(); }

}  // namespace velumar
