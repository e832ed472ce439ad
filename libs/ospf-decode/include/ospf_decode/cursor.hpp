// The one way bytes are read: a bounds-checked cursor over a span, in network byte order.
//
// Every decoder in this library takes its octets from a Cursor and from nothing else. A read past
// the end yields zero and latches the cursor as failed; all later reads of it yield zero too, so a
// decoder may read a whole structure and ask ok() once. A failed sub-cursor leaves its parent as
// it is. No other file does pointer arithmetic on captured bytes.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace ospf_decode {

using Bytes = std::span<const std::uint8_t>;

class Cursor {
 public:
  constexpr Cursor() = default;
  constexpr explicit Cursor(Bytes data) : data_(data) {}

  constexpr bool ok() const { return ok_; }
  constexpr std::size_t position() const { return at_; }
  // Octets still to be read; none once the cursor has failed.
  constexpr std::size_t remaining() const { return ok_ ? data_.size() - at_ : 0; }
  constexpr bool at_end() const { return remaining() == 0; }
  constexpr void fail() { ok_ = false; }

  std::uint8_t u8() { return take(1) ? data_[at_ - 1] : std::uint8_t{0}; }
  std::uint16_t u16() { return static_cast<std::uint16_t>(number<2>()); }
  std::uint32_t u24() { return static_cast<std::uint32_t>(number<3>()); }
  std::uint32_t u32() { return static_cast<std::uint32_t>(number<4>()); }
  std::uint64_t u64() { return number<8>(); }
  float f32() { return std::bit_cast<float>(u32()); }

  template <std::size_t N>
  std::array<std::uint8_t, N> array() {
    std::array<std::uint8_t, N> out{};
    if (take(N)) std::memcpy(out.data(), data_.data() + (at_ - N), N);
    return out;
  }

  constexpr Bytes bytes(std::size_t count) {
    return take(count) ? data_.subspan(at_ - count, count) : Bytes{};
  }
  constexpr Bytes rest() { return bytes(remaining()); }
  constexpr void skip(std::size_t count) { take(count); }

  // A cursor over the next `count` octets, which this one steps over; a failed one if they are
  // not there.
  constexpr Cursor sub(std::size_t count) {
    Cursor out(bytes(count));
    out.ok_ = ok_;
    return out;
  }

 private:
  constexpr bool take(std::size_t count) {
    if (!ok_ || count > data_.size() - at_) {
      ok_ = false;
      return false;
    }
    at_ += count;
    return true;
  }

  template <std::size_t N>
  std::uint64_t number() {
    if (!take(N)) return 0;
    std::uint64_t value = 0;
    for (std::size_t i = at_ - N; i < at_; ++i) value = value << 8 | data_[i];
    return value;
  }

  Bytes data_;
  std::size_t at_ = 0;
  bool ok_ = true;
};

}  // namespace ospf_decode
