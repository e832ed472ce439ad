// The ground of a look through a store: its header, spans, slots and lists, what there is of them,
// and reading without harm. Every address in the file is held against the blocks found here before
// what lies there is read.
#pragma once

#include <cinttypes>
#include <cstring>
#include <unordered_set>
#include <vector>

#include "store/check.hpp"
#include "store/layout.hpp"

namespace kelp::store {

class HeapCheck {
 public:
  HeapCheck(const View &view, const Finding &finding) : view_(view), finding_(finding) {}

  std::uint64_t findings() const { return findings_; }

  // False when nothing else can be looked at.
  bool check_header();
  void check_heap();

 protected:
  __attribute__((format(printf, 2, 3))) void say(const char *format, ...);

  template <typename T>
  bool read(std::uint64_t offset, T *value) const {
    if (offset > view_.size || sizeof *value > view_.size - offset) return false;
    std::memcpy(static_cast<void *>(value), view_.bytes + offset, sizeof *value);
    return true;
  }
  std::uint64_t offset_of(const void *address) const {
    return reinterpret_cast<std::uintptr_t>(address) - header_.identity.address;
  }
  template <typename T>
  bool read_at(const void *address, T *value) const {
    return read(offset_of(address), value);
  }

  // Whether the address is the start (or, with inside, any part) of a live block with so many bytes
  // from there on.
  bool is_block(const void *address, std::uint64_t bytes, bool inside = false) const;

  const View &view() const { return view_; }
  const Head &head() const { return header_.head; }

 private:
  void check_spans();
  std::uint64_t check_large(std::uint64_t i, std::uint64_t end);
  std::uint64_t check_free(std::uint64_t i, std::uint64_t end);
  void check_slots(std::uint64_t i);
  bool read_slot(std::uint64_t span, std::uint16_t number, Slot *slot) const;
  template <typename Test>
  void check_list(const char *what, std::size_t number, std::uint32_t first,
                  std::unordered_set<std::uint64_t> &expected, Test &&belongs);
  void check_bins();
  void check_classes();
  void note_block(std::uint8_t state, std::uint64_t asked, std::uint64_t used);
  void check_statistics();

  View view_;
  const Finding &finding_;
  std::uint64_t findings_ = 0;
  Header header_{};
  std::vector<Span> spans_;
  std::unordered_set<std::uint64_t> runs_;
  std::unordered_set<std::uint64_t> with_room_;
  Statistics found_{};
};

}  // namespace kelp::store
