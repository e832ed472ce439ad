// The steps of clone and copy, the same for all structures. Called by the rules of clone.hpp.
#include "encodings/clone.hpp"

#include "module/trace.hpp"

namespace harbor::clone {

namespace {

// Required: a destination that the caller gave is destroyed too when the image cannot be read into
// it.
void *read_image(const CloneFacts &facts, kelp_handle *handle, std::uint32_t space_id, void *object,
                 const void *work, std::uint32_t length, std::uint32_t *err) {
  if (object == nullptr) {
    register_trace(handle);
    object = structure_life::create_internal(facts.structure, handle, space_id);
    if (object == nullptr) {
      fail(handle, KELP_ERR_NO_MEMORY, err, About(facts.structure.record->type_name, "clone"));
      return nullptr;
    }
  }
  facts.read(handle, space_id, work, object, static_cast<std::int32_t>(length), 0, err);
  if (*err == 0) return object;
  if (object != facts.structure.null_object) {
    structure_life::destroy_internal(facts.structure, handle, space_id, object, true);
  }
  return nullptr;
}

}  // namespace

// Required: the image is written without the strict flag, so that the source's variant is kept even
// where the domain's is lower.
void through_image(const CloneFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                   const void *source, void **destination, void *work, std::uint32_t work_size,
                   std::uint32_t *err) {
  if (!begin(handle, err)) return;
  if (destination == nullptr || work == nullptr) {
    return fail(handle, KELP_ERR_NOT_FOUND, err, About(facts.structure.record->type_name, "clone"),
                "found a null %s, expected one",
                destination == nullptr ? "destination" : "work space");
  }
  const std::uint32_t length =
      facts.write(handle, space_id, work, source, static_cast<std::int32_t>(work_size), 0, err);
  if (*err != 0) return;
  *destination = read_image(facts, handle, space_id, *destination, work, length, err);
}

void *through_work_space(const CloneFacts &facts, kelp_handle *handle, const void *source,
                         void *destination) {
  void *work = nullptr;
  std::uint32_t work_size = 0;
  kelplib_get_handle_ws(handle, &work, &work_size, &handle->cr_err);
  through_image(facts, handle, handle->cr_space_id, source, &destination, work, work_size,
                &handle->cr_err);
  return destination;
}

}  // namespace harbor::clone
