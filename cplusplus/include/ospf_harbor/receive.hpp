// Images and documents from outside: checked first, and without the references that their writer
// had, which name tables of the writer. Programs that include this link ospf_harbor_check.
#pragma once

#include <ospf_harbor_check.h>

#include <algorithm>
#include <ospf_harbor/table.hpp>

namespace ospf_harbor {

namespace detail {

// A copy of an image without its references; empty when it is refused: at has failed then.
inline std::vector<std::byte> checked_image(session &at, std::uint32_t kind, const char *name,
                                            std::span<const std::byte> image) {
  std::vector<std::byte> copy(image.begin(), image.end());
  ospf_harbor_check_result result;
  const auto empty = [](const ospf_harbor_image_span *span, void *bytes) {
    if (span->piece < OSPF_HARBOR_SPAN_OID_HANDLE_WORD || span->piece > OSPF_HARBOR_SPAN_OID_SOURCE)
      return;
    std::fill_n(static_cast<std::byte *>(bytes) + span->offset, span->length, std::byte{0});
  };
  if (ospf_harbor_check_walk(kind, name, image.data(), image.size(), empty, copy.data(), &result) !=
      OSPF_HARBOR_FAULT_NONE) {
    at.fail(KELP_ERR_INVALID, result.text);
    copy.clear();
  }
  return copy;
}

}  // namespace detail

// A new object from an image of its type.
template <typename Ref>
owned<Ref> receive(session &at, std::span<const std::byte> image) {
  const auto checked = detail::checked_image(at, OSPF_HARBOR_CHECK_OBJECT, Ref::rules::name, image);
  owned<Ref> object(at);
  if (object && !checked.empty()) object.read_image(checked);
  return object;
}

// A new row of the table from a record's image; null when a session keeps that it was refused.
template <typename Table>
row<Table> receive_row(const table_ref<Table> &into, std::span<const std::byte> image) {
  const auto checked =
      detail::checked_image(into.at(), OSPF_HARBOR_CHECK_RECORD, Table::name, image);
  if (checked.empty()) return {into.at(), nullptr};
  return into.add_image(checked);
}

}  // namespace ospf_harbor
