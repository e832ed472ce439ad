// The runtime unpacks and checks single records; this keeps count of where they are.
#include "traces/trace_reader.hpp"

#include <kelp/embed.h>

#include "ospf_tables/input_error.hpp"

namespace tool {

using namespace ospf_tables;

TraceReader::TraceReader(std::string source, Sink sink)
    : source_(std::move(source)), sink_(std::move(sink)) {}

void TraceReader::add(std::span<const std::uint8_t> bytes) {
  kept_.insert(kept_.end(), bytes.begin(), bytes.end());
  std::size_t used = 0;
  while (used < kept_.size()) {
    kelp_trace_event event{};
    std::size_t length = 0;
    kelp_error error{};
    const std::int32_t result =
        kelp_trace_read_record(kept_.data() + used, kept_.size() - used, &event, &length, &error);
    if (result == KELP_ERR_AGAIN) break;
    if (result != 0) {
      throw InputError(source_ + ": byte " + std::to_string(offset_ + used) +
                       ": no trace record: " + error.text);
    }
    sink_(event, offset_ + used);
    used += length;
  }
  kept_.erase(kept_.begin(), kept_.begin() + static_cast<std::ptrdiff_t>(used));
  offset_ += used;
}

void TraceReader::end() const {
  if (kept_.empty()) return;
  throw InputError(source_, "byte " + std::to_string(offset_),
                   "the end of the file after " + std::to_string(kept_.size()) + " bytes",
                   "a whole trace record");
}

}  // namespace tool
