// Where the state bytes of embedded objects lie, as modules set it, ask for it and drop it.
#include "base/announce.hpp"
#include "base/failure.hpp"
#include "database/database.hpp"
#include "database/handle_state.hpp"

extern "C" uint32_t kelplib_get_sttr_offset(kelp_handle *handle, uint32_t space_id,
                                            const void *object) {
  (void)space_id;
  return handle->state->database->distances.get(object);
}

extern "C" void kelplib_update_sttr_offset(kelp_handle *handle, uint32_t space_id, void *object,
                                           uint32_t distance) {
  if (handle == nullptr || object == nullptr) return;
  kelp_database &database = *handle->state->database;
  // There is no error word here, and an object that finds no distance would mark bytes of others.
  if (!kelp::without_exceptions([&] { database.distances.set(object, distance); })) {
    bassert("kelplib_update_sttr_offset: memory for the distance", __FILE__, __LINE__);
  }
  database.objects.watch(object);
  handle->hd_mapped = 1;
  auto *header = static_cast<kelp_object_header *>(object);
  if ((header->obj_flags & OBJ_STTR_RELOCATED) != 0) return;
  kelp::announce(handle, &header->obj_flags, sizeof header->obj_flags, space_id);
  header->obj_flags |= OBJ_STTR_RELOCATED;
}

extern "C" void kelp_hd_mapping_destroy(kelp_handle *handle, uint32_t space_id, void *object,
                                        uint32_t *err) {
  (void)space_id;
  if (kelp::is_set(err)) return;
  if (object == nullptr) {
    kelp::raise(handle, err, KELP_ERR_INVALID);
    return;
  }
  kelp::Distances &distances = handle->state->database->distances;
  distances.drop(object);
  handle->hd_mapped = distances.empty() ? 0 : 1;
}
