#include "marketdata/metalib_reader.h"

#include "marketdata/metalib_error.h"

namespace velumar {

namespace {
[[noreturn]] void NotBuilt() { throw MetaLibError(MetaLibError::kNotOpen, "not built yet"); }
}  // namespace

struct MetaLibReader::State {};

MetaLibReader::MetaLibReader(IndexCache&) : state_(std::make_unique<State>()) {}
MetaLibReader::~MetaLibReader() = default;

void MetaLibReader::OpenDirectory(std::string_view) { NotBuilt(); }
void MetaLibReader::CloseDirectory() { NotBuilt(); }
int MetaLibReader::SecurityCount() const { NotBuilt(); }
int MetaLibReader::NextSecurity() { NotBuilt(); }
void MetaLibReader::ReadSecurityHeader() { NotBuilt(); }
const std::string& MetaLibReader::SecuritySymbol() const { NotBuilt(); }
int MetaLibReader::SecurityInterval() const { NotBuilt(); }
SecurityInfo MetaLibReader::Security() const { NotBuilt(); }
void MetaLibReader::CloseSecurity() { NotBuilt(); }
void MetaLibReader::SelectSeries(std::string_view, int, int) { NotBuilt(); }
void MetaLibReader::ReadSeries() { NotBuilt(); }
const std::vector<std::int32_t>& MetaLibReader::GetDates() const { NotBuilt(); }
const std::vector<std::int32_t>& MetaLibReader::GetTimes() const { NotBuilt(); }
const std::vector<float>& MetaLibReader::GetOpens() const { NotBuilt(); }
const std::vector<float>& MetaLibReader::GetHighs() const { NotBuilt(); }
const std::vector<float>& MetaLibReader::GetLows() const { NotBuilt(); }
const std::vector<float>& MetaLibReader::GetCloses() const { NotBuilt(); }
const std::vector<float>& MetaLibReader::GetVolumes() const { NotBuilt(); }
const std::vector<float>& MetaLibReader::GetOpenInterests() const { NotBuilt(); }
void MetaLibReader::SeekDate(std::string_view, int) { NotBuilt(); }
void MetaLibReader::MoveToStart() { NotBuilt(); }
void MetaLibReader::MoveToEnd() { NotBuilt(); }
void MetaLibReader::MoveBy(int) { NotBuilt(); }
void MetaLibReader::ReadBar() { NotBuilt(); }
std::int32_t MetaLibReader::BarDateAtCursor() const { NotBuilt(); }
std::int32_t MetaLibReader::BarTimeAtCursor() const { NotBuilt(); }

}  // namespace velumar
