// Table vfts: copying them for a module.
#include <cstring>

#include "kelp/database.h"

static_assert(sizeof(kelp_table_vft) == 384);

extern "C" uint32_t table_vft_cpy(void *destination, const void *source, uint32_t count) {
  if (count == 0) return 0;
  if (destination == nullptr || source == nullptr) return KELP_ERR_INVALID;
  std::memcpy(destination, source, size_t{count} * sizeof(kelp_table_vft));
  return 0;
}
