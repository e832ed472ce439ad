// The announced writes of a handle.
#include "harness/harness.hpp"

namespace harness {

WriteWatch::WriteWatch(kelp_handle *handle) : handle_(handle) {
  kelp_handle_set_write_observer(
      handle,
      [](void *context, const void *address, std::size_t length, std::uint32_t space_id,
         std::uint32_t origin) {
        static_cast<WriteWatch *>(context)->ranges_.push_back({address, length, space_id, origin});
      },
      this);
}

WriteWatch::~WriteWatch() { kelp_handle_set_write_observer(handle_, nullptr, nullptr); }

std::vector<Range> WriteWatch::of_origin(std::uint32_t origin) const {
  std::vector<Range> result;
  for (const Range &range : ranges_) {
    if (range.origin == origin) result.push_back(range);
  }
  return result;
}

}  // namespace harness
