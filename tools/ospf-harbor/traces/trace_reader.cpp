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
  read_on(false);
}

void TraceReader::read_on(bool at_end) {
  std::size_t used = 0;
  while (used < kept_.size()) {
    kelp_trace_event event{};
    std::size_t length = 0;
    kelp_error error{};
    const std::size_t size = kept_.size() - used;
    const std::int32_t result =
        kelp_trace_read_record(kept_.data() + used, size, &event, &length, &error);
    if (result == KELP_ERR_AGAIN && !at_end) break;
    if (result == 0) {
      sink_(event, offset_ + used);
      ++records_;
    } else if (result == KELP_ERR_AGAIN) {
      length = 1;  // a record that was torn at its end may have whole ones behind its beginning
      pass_over(length, offset_ + used,
                "found the end of the file after " + std::to_string(size) +
                    " bytes, expected a whole trace record");
    } else {
      pass_over(length, offset_ + used, error.text);
    }
    used += length;
  }
  kept_.erase(kept_.begin(), kept_.begin() + static_cast<std::ptrdiff_t>(used));
  offset_ += used;
}

void TraceReader::pass_over(std::size_t bytes, std::uint64_t offset, const std::string &why) {
  if (places_passed_over_ == 0) first_place_ = "byte " + std::to_string(offset) + ": " + why;
  if (places_passed_over_ == 0 || offset != end_of_last_place_) ++places_passed_over_;
  end_of_last_place_ = offset + bytes;
  bytes_passed_over_ += bytes;
}

void TraceReader::end() {
  read_on(true);
  if (records_ == 0 && bytes_passed_over_ != 0) {
    throw InputError(source_ + ": no trace record: " + first_place_);
  }
}

std::string TraceReader::passed_over() const {
  if (bytes_passed_over_ == 0) return "";
  return source_ + ": passed over " + std::to_string(bytes_passed_over_) + " bytes in " +
         std::to_string(places_passed_over_) + (places_passed_over_ == 1 ? " place" : " places") +
         " that are no trace record, the first at " + first_place_;
}

}  // namespace tool
