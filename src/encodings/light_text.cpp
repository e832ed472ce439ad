#include "encodings/light_text.hpp"

#include <cstdio>

#include "module/bounded_text.hpp"
#include "module/failure.hpp"

namespace harbor::light_text {

// The word is read again behind kelp_store_err: it may be the handle's own. A path of more than 255
// characters is cut. The text of the element is of no interest.
Found find_member(kelp_handle *handle, kelp_xml_document *document, const char *path,
                  std::string_view name, std::uint32_t *err, char *message,
                  std::int32_t message_size) {
  BoundedText<256> child;
  child.put(path).put("/").put(name);
  char scratch[128];
  *err = xml_get_element_value(document, child.data(), scratch, sizeof(scratch), 0);
  if (*err != 0)
    store_failure(handle, *err, About(child.data(), "from_xml"), "finding the element");
  if (*err == 0) return Found::yes;
  if (*err == KELP_ERR_NOT_FOUND) {
    *err = 0;
    return Found::no;
  }
  if (message != nullptr && message_size > 0) {
    std::snprintf(message, static_cast<std::size_t>(message_size), "Failed xpath: %s", path);
  }
  return Found::failed;
}

}  // namespace harbor::light_text
