// One input of a fuzz target: what it means, for the targets and for the replay of their corpora.
//
// The first octet chooses the type or table, the second how it is read: its lowest bit under a
// handle that tracks state, the next one with the frame of a record put right first. The rest is
// the image or the document. What the checker passes the library must read, write, and read again.
#pragma once

#include <array>
#include <cstring>
#include <span>

#include "reading.hpp"

namespace ospf_harbor_check_tests {

enum class FuzzTarget { object, record, key, document };
inline constexpr std::array fuzz_targets{FuzzTarget::object, FuzzTarget::record, FuzzTarget::key,
                                         FuzzTarget::document};
constexpr const char *name_of(FuzzTarget target) {
  constexpr std::array names{"object", "record", "key", "document"};
  return names[static_cast<std::size_t>(target)];
}

// Documents are of objects, and behind them of records.
inline Input chosen(FuzzTarget target, std::uint8_t choice) {
  static const std::vector<std::string> objects = names_of(OSPF_HARBOR_CHECK_OBJECT);
  static const std::vector<std::string> tables = names_of(OSPF_HARBOR_CHECK_RECORD);
  switch (target) {
    case FuzzTarget::object:
      return {OSPF_HARBOR_CHECK_OBJECT, objects[choice % objects.size()]};
    case FuzzTarget::record:
      return {OSPF_HARBOR_CHECK_RECORD, tables[choice % tables.size()]};
    case FuzzTarget::key:
      return {OSPF_HARBOR_CHECK_KEY, tables[choice % tables.size()]};
    default:
      break;
  }
  const std::size_t at = choice % (objects.size() + tables.size());
  if (at < objects.size()) return {OSPF_HARBOR_CHECK_OBJECT, objects[at]};
  return {OSPF_HARBOR_CHECK_RECORD, tables[at - objects.size()]};
}

// So that mutations behind the frame are not all refused for its sake.
inline void put_frame_right(Bytes &image, const std::string &table) {
  constexpr std::size_t frame_size = 43;
  if (image.size() < frame_size + 2) return;
  image[0] = 188;
  std::memset(&image[1], 255, 6);
  image[7] = (image[frame_size + 1] & 8) != 0 ? 1 : 0;
  for (std::size_t at = 0; at < 4; ++at) {
    image[12 + at] = static_cast<std::uint8_t>(image.size() >> (24 - 8 * at));
  }
  for (const Table *row : harbor::model::all_tables) {
    if ("tbl_" + std::string(row->name) != table) continue;
    for (std::size_t at = 0; at < 16; ++at) {
      const std::string digits(row->luid.substr(2 * at, 2));
      image[27 + at] = static_cast<std::uint8_t>(std::stoul(digits, nullptr, 16));
    }
  }
}

// Empty, or what went wrong.
inline std::string run_fuzz_input(FuzzTarget target, std::span<const std::uint8_t> data) {
  if (data.size() < 2) return {};
  const Input of = chosen(target, data[0]);
  const bool is_tracked = (data[1] & 1) != 0;
  Bytes image(data.begin() + 2, data.end());
  if (target == FuzzTarget::record && (data[1] & 2) != 0) put_frame_right(image, of.name);

  const Place place(is_tracked ? KELP_TRACKING_ON : KELP_TRACKING_ABSENT);
  ospf_harbor_check_result result;
  if (target == FuzzTarget::document) {
    const std::string text(image.begin(), image.end());
    if (ospf_harbor_check_xml(of.kind, of.name.c_str(), text.data(), text.size(), 0, &result) !=
        OSPF_HARBOR_FAULT_NONE) {
      return {};
    }
    return read_document(place, of, text);
  }
  // The display walks what is refused, too.
  std::size_t covered = 0;
  const auto cover = [](const ospf_harbor_image_span *span, void *end) {
    auto *covered = static_cast<std::size_t *>(end);
    if (span->offset != *covered || span->length == 0) __builtin_trap();
    *covered += span->length;
  };
  const std::uint32_t fault = ospf_harbor_check_walk(of.kind, of.name.c_str(), image.data(),
                                                     image.size(), cover, &covered, &result);
  if (covered > image.size()) return "the display shows more than there is";
  if (fault != OSPF_HARBOR_FAULT_NONE) return {};
  if (covered != image.size()) return "the display does not show all";
  return read_image(place, of, image);
}

}  // namespace ospf_harbor_check_tests
