// Which bytes of a block a call changes, and which of them it announced before. Used where a test
// holds a whole object against the promise that each store is announced first.
#pragma once

#include <kelp/embed.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace whole_schema {

// Watches one block of memory: every byte that changes must lie in a range that was announced
// before the change.
class MemoryWatch {
 public:
  MemoryWatch(kelp_handle *handle, void *block, std::size_t size)
      : handle_(handle),
        block_(static_cast<std::uint8_t *>(block)),
        seen_(block_, block_ + size),
        announced_(size, false) {
    kelp_handle_set_write_observer(handle, observe, this);
  }
  ~MemoryWatch() { kelp_handle_set_write_observer(handle_, nullptr, nullptr); }

  // Compares once more, after the call.
  void finish() { compare(); }

  struct Write {
    std::ptrdiff_t offset;
    std::size_t length;
    bool operator==(const Write &) const = default;
  };
  const std::vector<Write> &writes() const { return writes_; }
  const std::vector<std::size_t> &unannounced() const { return unannounced_; }

 private:
  static void observe(void *context, const void *address, std::size_t length, std::uint32_t,
                      std::uint32_t origin) {
    auto *watch = static_cast<MemoryWatch *>(context);
    watch->compare();
    const auto *at = static_cast<const std::uint8_t *>(address);
    if (origin != KELP_WRITE_MODULE) return;
    if (at < watch->block_ || at >= watch->block_ + watch->seen_.size()) return;
    const auto offset = static_cast<std::size_t>(at - watch->block_);
    watch->writes_.push_back({at - watch->block_, length});
    for (std::size_t byte = offset; byte < offset + length && byte < watch->seen_.size(); ++byte) {
      watch->announced_[byte] = true;
    }
  }

  void compare() {
    for (std::size_t byte = 0; byte < seen_.size(); ++byte) {
      if (block_[byte] == seen_[byte]) continue;
      if (!announced_[byte]) unannounced_.push_back(byte);
      seen_[byte] = block_[byte];
    }
  }

  kelp_handle *handle_;
  std::uint8_t *block_;
  std::vector<std::uint8_t> seen_;
  std::vector<bool> announced_;
  std::vector<Write> writes_;
  std::vector<std::size_t> unannounced_;
};

}  // namespace whole_schema
