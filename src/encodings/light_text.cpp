#include "encodings/light_text.hpp"

#include <cstdio>

#include "module/bounded_text.hpp"
#include "module/failure.hpp"

namespace harbor::light_text {

// The word is read again behind kelp_store_err: it may be the handle's own. A path of more than 255
// characters is cut. The text of the element is of no interest.
Found MembersAtPath::find(std::string_view name) {
  BoundedText<256> child;
  child.put(path_).put("/").put(name);
  char scratch[128];
  *err_ = xml_get_element_value(document_, child.data(), scratch, sizeof(scratch), 0);
  if (*err_ != 0) {
    store_failure(handle_, *err_, About(child.data(), "from_xml"), "finding the element");
  }
  if (*err_ == 0) return Found::yes;
  if (*err_ == KELP_ERR_NOT_FOUND) {
    *err_ = 0;
    return Found::no;
  }
  if (message_ != nullptr && message_size_ > 0) {
    std::snprintf(message_, static_cast<std::size_t>(message_size_), "Failed xpath: %s", path_);
  }
  return Found::failed;
}

}  // namespace harbor::light_text
