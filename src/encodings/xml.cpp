#include "encodings/xml.hpp"

#include <cstring>
#include <utility>

namespace harbor::xml {

Path child_path(const Source &source, std::string_view tag) {
  Path path;
  path.put(source.path).put("/").put(tag);
  return path;
}

Path element_path(const Source &source, std::string_view tag, std::uint32_t index) {
  Path path = child_path(source, tag);
  path.put("[").put(index).put("]");
  return path;
}

bool open(const Source &source) {
  std::uint32_t count = 0;
  if (xml_get_element_nodecount(source.document, source.path, &count) == 0 && count != 0) {
    return true;
  }
  fail(source.handle, KELP_ERR_NOT_FOUND, source.err, About(source.path, "from_xml"),
       "found no such element in the document");
  return false;
}

void find(Source &source, Progress &progress, std::size_t longest) {
  if (kelp::quick::of(source.handle) == nullptr || source.path == nullptr ||
      !Path().put(source.path).has_room(longest)) {
    return;
  }
  source.element = kelp_xml_find(source.document, source.path);
  source.progress = &progress;
}

kelp_xml_row children(const Source &source, std::string_view tag) {
  return kelp_xml_children(source.document, source.element, tag.data(), tag.size(),
                           &source.progress->next);
}

// A chain of calls keeps the first failure of all, and who hears of writes may ask at each of them.
void miss(const Source &source, Missed missed, std::string_view tag, std::string_view member) {
  Progress &progress = *source.progress;
  progress.missed = missed;
  progress.path = source.path;
  progress.tag = tag;
  progress.member = member;
  if (source.handle->cr_create != 0 || kelp::quick::unheard_writes(source.handle) == nullptr) {
    tell(source);
  }
}

void tell(const Source &source) {
  Progress &progress = *source.progress;
  if (progress.missed == Missed::nothing) return;
  Source above = source;
  above.path = progress.path;
  const Path path = child_path(above, progress.tag);
  std::uint8_t none = 0;
  switch (std::exchange(progress.missed, Missed::nothing)) {
    case Missed::nothing:
      break;
    case Missed::element:
      read_at_path<Kind::u8>(source, path, &none);
      break;
    case Missed::structure:
      open(source.at(path));
      break;
    case Missed::member:
      light_text::MembersAtPath(source.handle, source.document, path.data(), source.err,
                                source.message, source.message_size)
          .find(progress.member);
      break;
  }
  *source.err = 0;
}

void clear_last_error(const Source &source) {
  source.progress->missed = Missed::nothing;
  kelp::quick::clear_last_error(source.handle);
}

void leave(const Source &source) {
  Progress &progress = *source.progress;
  if (progress.missed == Missed::nothing || progress.path != source.path) return;
  progress.kept = Path();
  progress.path = progress.kept.put(source.path).data();
}

bool goes_on(const Source &source) {
  if (*source.err == KELP_ERR_NOT_FOUND) *source.err = 0;
  return *source.err == 0;
}

void fail_creation(const Source &source) {
  fail(source.handle, KELP_ERR_NO_MEMORY, source.err, About(source.path, "from_xml"));
}

MembersOfElement::MembersOfElement(const Source &source, std::string_view tag)
    : source_(source), tag_(tag) {
  const kelp_xml_row row = children(source, tag);
  if (row.count == 0) return;
  std::array<const char *, std::tuple_size_v<decltype(tags_)>> tags;
  count_ = kelp_xml_empty_children(row.elements[0], tags.data(), tags.size());
  for (std::size_t at = 0; are_known() && at < count_; ++at) tags_[at] = tags[at];
}

light_text::Found MembersOfElement::find(std::string_view name) {
  *source_.err = 0;
  const auto end = tags_.begin() + static_cast<std::ptrdiff_t>(count_);
  if (std::find(tags_.begin(), end, name) != end) return light_text::Found::yes;
  miss(source_, Missed::member, tag_, name);
  return light_text::Found::no;
}

}  // namespace harbor::xml
