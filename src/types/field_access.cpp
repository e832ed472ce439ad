#include "types/field_access.hpp"

namespace harbor::field_access {

void refuse_variant(const Field &field, kelp_handle *handle, const void *object,
                    std::uint32_t *err) {
  fail_variant(handle, err, About(field, "access"),
               "found an object of variant %d, expected variant %d or a higher one",
               object == nullptr ? -1 : header_of(object)->variant, field.since);
}

}  // namespace harbor::field_access
