#include "tables/ospf_harbor_oper_table.hpp"

#include <kelp/core.h>
#include <kelp/database.h>

#include <algorithm>
#include <cstring>

#include "module/failure.hpp"

extern "C" {
// The vfts in the order of their LUIDs, and the copy that callers get.
extern const kelp_table_vft ospf_harbor_oper_table_vfts[harbor::model::all_tables.size()];
extern KELP_API kelp_table_vft ospf_harbor_oper_table_lut[harbor::model::all_tables.size()];
kelp_table_vft ospf_harbor_oper_table_lut[harbor::model::all_tables.size()];
}

namespace harbor::vft {

namespace {

constexpr std::uint32_t table_count = model::all_tables.size();

// Set before the copy is made, whatever becomes of it.
std::uint32_t copy_started = 0;

// A message and its index, which stands where it is traced: clang 14 takes no consteval of a
// template's argument.
template <typename... Arguments>
void trace_form(TableForm form, std::uint32_t index, Arguments... arguments) {
  trace(table_source, messages::form_of(form).level, index, arguments...);
}

std::uint32_t copy() {
  copy_started = 1;
  trace_form(TableForm::vft_initializing, messages::of_module(TableForm::vft_initializing),
             "ospf_harbor_oper");
  return table_vft_cpy(ospf_harbor_oper_table_lut, ospf_harbor_oper_table_vfts, table_count);
}

// --- the lookup ---------------------------------------------------------------------------------
//
// Five bits of the LUID select the candidates, which are then compared whole.

constexpr std::uint64_t big_endian_word(const std::uint8_t *bytes) {
  std::uint64_t word = 0;
  for (int at = 0; at < 8; ++at) word = word << 8 | bytes[at];
  return word;
}

// The bits straddle the fourth and the fifth byte.
constexpr std::uint32_t selector_count = 32;
constexpr std::uint32_t selector(std::uint64_t first_half) { return first_half >> 29 & 31; }

struct Candidate {
  std::uint64_t first_half;
  std::uint64_t second_half;
  std::int32_t index;
};
struct Case {
  Candidate candidates[2];
  std::uint32_t count;
};

consteval std::array<Case, selector_count> make_cases() {
  std::array<std::string_view, table_count> luids;
  for (std::uint32_t at = 0; at < table_count; ++at) luids[at] = model::all_tables[at]->luid;
  std::sort(luids.begin(), luids.end());
  std::array<Case, selector_count> cases{};
  for (std::uint32_t at = 0; at < table_count; ++at) {
    const Luid luid = luid_from(luids[at]);
    const std::uint64_t first = big_endian_word(luid.bytes);
    Case &found = cases[selector(first)];
    found.candidates[found.count++] = {first, big_endian_word(luid.bytes + 8),
                                       static_cast<std::int32_t>(at)};
  }
  return cases;
}
constexpr auto cases = make_cases();

}  // namespace

std::uint32_t init() { return copy_started != 0 ? 0 : copy(); }

std::int32_t lookup(const std::uint8_t *luid) {
  std::uint8_t bytes[luid_length];
  std::memcpy(bytes, luid, luid_length);
  const std::uint64_t first = big_endian_word(bytes);
  const Case &selected = cases[selector(first)];
  for (std::uint32_t at = 0; at < selected.count; ++at) {
    const Candidate &candidate = selected.candidates[at];
    if (candidate.first_half == first && candidate.second_half == big_endian_word(bytes + 8)) {
      return candidate.index;
    }
  }
  return -1;
}

// Required: a failed copy does not end the call. The lookup runs, the caller gets a vft that is not
// filled in, and the code stays in the error word.
void get(kelp_handle *handle, std::uint32_t, const std::uint8_t *luid,
         const kelp_table_vft **vft_out, std::uint32_t *err) {
  if (*err != 0) {
    trace_form(TableForm::vft_error_present, messages::of_module(TableForm::vft_error_present));
    return;
  }
  kelp::quick::clear_last_error(handle);
  *err = init();
  if (*err != 0) {
    store_failure(handle, *err, About("ospf_harbor_oper", "table_get_vft"), "filling in the vfts");
  }
  *vft_out = nullptr;
  const std::int32_t index = lookup(luid);
  if (index < 0) {
    return fail(handle, KELP_ERR_NOT_FOUND, err, About("ospf_harbor_oper", "table_get_vft"),
                "found an identity that no table has");
  }
  *vft_out = &ospf_harbor_oper_table_lut[index];
}

const std::uint8_t *get_luid(const TableFacts &, kelp_handle *handle, std::uint32_t space_id,
                             const void *object, std::uint32_t *err) {
  return kelp_get_luid(handle, space_id, object, err);
}

}  // namespace harbor::vft
