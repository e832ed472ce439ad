// The check of an XML document, by the rows of the schema over the runtime's own look-ups and value
// readers, so that it finds what the readers will find and no rule for a text stands twice. Values
// are read into a database of the check's own, which ends with it.
//
// What it refuses and the readers would not: an element that stands twice, of which they take the
// first; an object in another place than the record's, which "//name" would find; an array longer
// than any LSA, whose growth by one element at a time costs the square of its length.
#include <kelp/embed.h>
#include <kelp/primitives.h>
#include <kelp/xml.h>

#include <cstdio>

#include "result.hpp"
#include "subject.hpp"

namespace ospf_harbor_check {

using model::Field;
using model::Kind;
using model::Structure;

namespace {

// The octets of the longest LSA, and its words.
constexpr std::uint32_t most_octets = 65536;
constexpr std::uint32_t most_elements(Kind held) {
  return held == Kind::u8 ? most_octets : most_octets / 4;
}

constexpr std::uint32_t message_size = 512;

// Where values are read into. It becomes the thread's current database while it lives, and puts
// back the one before.
class Scratch {
 public:
  Scratch() {
    database_ = kelp_database_open_private("document check", nullptr, nullptr);
    if (database_ != nullptr) handle_ = kelp_handle_create(database_, nullptr, nullptr);
  }
  ~Scratch() {
    if (handle_ != nullptr) kelp_handle_destroy(handle_);
    if (database_ != nullptr) kelp_database_close(database_, nullptr);
    kelp_database_make_current(callers_);
  }
  Scratch(const Scratch &) = delete;
  Scratch &operator=(const Scratch &) = delete;

  kelp_handle *handle() const { return handle_; }

 private:
  kelp_database *callers_ = kelp_database_current();
  kelp_database *database_;
  kelp_handle *handle_ = nullptr;
};

class Document {
 public:
  explicit Document(ospf_harbor_check_result &result) : result_(result) {}
  ~Document() { kelp_xml_free(document_); }
  Document(const Document &) = delete;
  Document &operator=(const Document &) = delete;

  void check(const Subject &subject, std::string_view text, std::size_t limit);

 private:
  // Paths of the schema are shorter; the readers cut theirs at the same length.
  using Path = FixedText<256>;

  bool parse(std::string_view text);
  void record(const model::Table &table);
  bool outermost(const char *name);
  bool structure(const Structure &type, const Path &path);
  bool field(const Field &field, const Path &path);
  bool arm(const Field &field, std::string_view selector, const Path &parent);
  bool array(const Field &field, const Path &path);
  bool enumeration(const model::Enumeration &type, const Path &path);
  bool flag_set(const model::FlagSet &type, const Path &path);
  bool value(Kind kind, const Path &path);

  std::uint32_t count(std::string_view path);
  // The members that stand in the element at path, at most one of each.
  template <typename Members, typename Take>
  bool members(const Members &members, const Path &path, Take take);
  bool at_most_one(const Path &path);
  bool fail(ospf_harbor_check_fault fault, const char *path, std::string_view found,
            std::string_view expected);
  // A message of the runtime: "<where>: found <found>[, expected <expected>]".
  bool fail_as_told(ospf_harbor_check_fault fault, std::string_view path, const char *message,
                    std::string_view expected);

  ospf_harbor_check_result &result_;
  Scratch scratch_;
  kelp_xml_document *document_ = nullptr;
  std::uint32_t selector_ = 0;
};

bool Document::fail(ospf_harbor_check_fault fault, const char *path, std::string_view found,
                    std::string_view expected) {
  if (document_ != nullptr) {
    xml_get_element_position(document_, path, &result_.line, &result_.column);
  }
  say_in_document(result_, {fault, path, "", found, expected});
  return false;
}

bool Document::fail_as_told(ospf_harbor_check_fault fault, std::string_view path,
                            const char *message, std::string_view expected) {
  constexpr std::string_view before_found = ": found ";
  constexpr std::string_view before_place = " at line ";
  constexpr std::string_view before_expected = ", expected ";
  std::string_view told(message);
  if (const auto at = told.find(before_found); at != told.npos) {
    told.remove_prefix(at + before_found.size());
  }
  if (const auto at = told.rfind(before_expected); at != told.npos) {
    expected = told.substr(at + before_expected.size());
    told = told.substr(0, at);
  }
  if (const auto at = told.rfind(before_place); at != told.npos) {
    std::sscanf(told.data() + at, " at line %u, column %u", &result_.line, &result_.column);
    told = told.substr(0, at);
  }
  say_in_document(result_, {fault, path, "", told, expected});
  return false;
}

bool Document::parse(std::string_view text) {
  char message[message_size] = "";
  document_ = kelp_xml_parse(text.data(), text.size(), message, sizeof message);
  if (document_ != nullptr) return true;
  return fail_as_told(OSPF_HARBOR_FAULT_DOCUMENT, "document", message,
                      "a well-formed document with one root element, without a document type");
}

std::uint32_t Document::count(std::string_view path) {
  std::uint32_t count = 0;
  xml_get_element_nodecount(document_, path.data(), &count);
  return count;
}

bool Document::at_most_one(const Path &path) {
  const std::uint32_t found = count(path.view());
  if (found <= 1) return true;
  // The place of the one that is too many.
  Path second;
  second.put(path.view()).put("[2]");
  return fail(OSPF_HARBOR_FAULT_ELEMENT, second.c_str(), FixedText<64>().number(found).view(),
              "one element, as it is no array");
}

template <typename Members, typename Take>
bool Document::members(const Members &members, const Path &path, Take take) {
  for (const auto &member : members) {
    Path place;
    place.put(path.view()).put("/").put(member.name);
    if (!at_most_one(place)) return false;
    if (count(place.view()) == 1 && !take(member, place)) return false;
  }
  return true;
}

// --- values -------------------------------------------------------------------------------------

template <typename Value>
using FromXml = void(kelp_handle *, std::uint32_t, const char *, kelp_xml_document *, Value *,
                     std::uint32_t *, char *, std::int32_t);

template <typename Value>
std::uint32_t read(kelp_handle *handle, kelp_xml_document *document, const char *path,
                   FromXml<Value> *from_xml, char *message) {
  Value value{};
  std::uint32_t err = 0;
  from_xml(handle, 0, path, document, &value, &err, message, message_size);
  return err;
}

bool Document::value(Kind kind, const Path &path) {
  char message[message_size] = "";
  const auto read_as = [&]<typename Value>(FromXml<Value> *from_xml) {
    return read<Value>(scratch_.handle(), document_, path.c_str(), from_xml, message);
  };
  std::uint32_t err = 0;
  switch (kind) {
    case Kind::u8:
      err = read_as(&u_int8_from_xml);
      break;
    case Kind::u16:
      err = read_as(&u_int16_from_xml);
      break;
    case Kind::u32:
      err = read_as(&u_int32_from_xml);
      break;
    case Kind::real:
      err = read_as(&double_from_xml);
      break;
    case Kind::boolean:
      err = read_as(&kelp_boolean_from_xml);
      break;
    case Kind::address:
      err = read_as(&ip_address_from_xml);
      break;
    default:
      err = read_as(&kelp_vstring_from_xml);
  }
  if (err == 0 || err == KELP_ERR_NOT_FOUND) return true;
  const bool has_memory = err != KELP_ERR_NO_MEMORY;
  return fail_as_told(has_memory ? OSPF_HARBOR_FAULT_VALUE : OSPF_HARBOR_FAULT_MEMORY, path.view(),
                      has_memory ? message : "no memory for the value", "a value of the field");
}

bool Document::array(const Field &field, const Path &path) {
  const std::uint32_t found = count(path.view());
  const std::uint32_t most = most_elements(field.held);
  if (found > most) {
    return fail(OSPF_HARBOR_FAULT_COUNT, path.c_str(),
                FixedText<64>().number(found).put(" elements").view(),
                FixedText<64>().put("at most ").number(most).put(" (the longest LSA)").view());
  }
  for (std::uint32_t at = 1; at <= found; ++at) {
    Path element;
    element.put(path.view()).put("[").number(at).put("]");
    if (!value(field.held, element)) return false;
  }
  return true;
}

bool Document::enumeration(const model::Enumeration &type, const Path &path) {
  std::string_view first;
  return members(type.members, path, [&](const model::Member &member, const Path &place) {
    if (!first.empty()) {
      return fail(OSPF_HARBOR_FAULT_ELEMENT, place.c_str(),
                  FixedText<128>().put(member.name).put(" beside ").put(first).view(), "one value");
    }
    first = member.name;
    selector_ = member.value;
    return true;
  });
}

bool Document::flag_set(const model::FlagSet &type, const Path &path) {
  return members(type.members, path, [](const model::Member &, const Path &) { return true; });
}

// --- elements -----------------------------------------------------------------------------------

bool Document::field(const Field &field, const Path &path) {
  if (field.kind == Kind::array) return array(field, path);
  if (!at_most_one(path)) return false;
  if (count(path.view()) == 0) return true;
  switch (field.kind) {
    case Kind::structure:
      return structure(*field.structure, path);
    case Kind::enumeration:
      return enumeration(*field.enumeration, path);
    case Kind::flags:
      return flag_set(*field.flag_set, path);
    default:
      return value(field.kind, path);
  }
}

// Arms that are not selected are not read.
bool Document::arm(const Field &field, std::string_view selector, const Path &parent) {
  if (field.selector != selector_) return true;
  Path path;
  path.put(parent.view()).put("/").put(selector).put("-").put(field.name);
  if (!at_most_one(path)) return false;
  if (count(path.view()) == 0) return true;
  return field.held == Kind::structure ? structure(*field.structure, path)
                                       : value(field.held, path);
}

bool Document::structure(const Structure &type, const Path &path) {
  // A selector that the document does not have is that of a new object.
  if (type.is_choice()) selector_ = 0;
  std::string_view selector;
  for (const Field *of : type.fields) {
    if (of->kind == Kind::reference || of->kind == Kind::counter) continue;
    if (of->kind == Kind::arm) {
      if (!arm(*of, selector, path)) return false;
      continue;
    }
    if (of->kind == Kind::enumeration) selector = of->name;
    Path place;
    place.put(path.view()).put("/").put(of->name);
    if (!field(*of, place)) return false;
  }
  return true;
}

// "//name" finds the first element of that name anywhere.
bool Document::outermost(const char *name) {
  Path path;
  path.put("//").put(name);
  const std::uint32_t found = count(path.view());
  if (found == 1) return true;
  return fail(OSPF_HARBOR_FAULT_ELEMENT, path.c_str(), FixedText<64>().number(found).view(),
              "one element in the whole document");
}

void Document::record(const model::Table &table) {
  if (!outermost(table_name(table))) return;
  for (const Structure *type : {table.key_structure, table.record}) {
    if (type == nullptr) continue;
    const FixedText<64> name(type->name);
    if (!outermost(name.c_str())) return;
    Path within;
    within.put("//").put(table_name(table)).put("/").put(type->name);
    if (count(within.view()) != 1) {
      Path path;
      path.put("//").put(type->name);
      fail(OSPF_HARBOR_FAULT_ELEMENT, path.c_str(), "it somewhere else",
           FixedText<128>().put("it right in ").put(table_name(table)).view());
      return;
    }
    Path path;
    path.put("//").put(type->name);
    if (!structure(*type, path)) return;
  }
}

void Document::check(const Subject &subject, std::string_view text, std::size_t limit) {
  if (text.size() > limit) {
    fail(OSPF_HARBOR_FAULT_SIZE, "document",
         FixedText<64>().number(text.size()).put(" bytes").view(),
         FixedText<64>().put("at most ").number(limit).view());
    return;
  }
  if (scratch_.handle() == nullptr) {
    fail(OSPF_HARBOR_FAULT_MEMORY, "document", "no memory for a database", "some");
    return;
  }
  if (!parse(text)) return;
  if (subject.table != nullptr) {
    record(*subject.table);
    return;
  }
  const FixedText<64> name(subject.structure != nullptr     ? subject.structure->name
                           : subject.enumeration != nullptr ? subject.enumeration->name
                                                            : subject.flag_set->name);
  if (!outermost(name.c_str())) return;
  Path path;
  path.put("//").put(name.view());
  if (subject.structure != nullptr) {
    structure(*subject.structure, path);
  } else if (subject.enumeration != nullptr) {
    enumeration(*subject.enumeration, path);
  } else {
    flag_set(*subject.flag_set, path);
  }
}

}  // namespace

}  // namespace ospf_harbor_check

uint32_t ospf_harbor_check_xml(uint32_t kind, const char *name, const char *document, size_t length,
                               size_t limit, ospf_harbor_check_result *result) {
  ospf_harbor_check::ResultPlace place(result, name);
  const bool has_form = kind != OSPF_HARBOR_CHECK_KEY && name != nullptr;
  const ospf_harbor_check::Subject subject =
      has_form ? ospf_harbor_check::find_subject(kind, name) : ospf_harbor_check::Subject{};
  if (!subject.is_known()) {
    ospf_harbor_check::say_unknown(*place, kind);
    return place->fault;
  }
  const std::string_view text(document, document == nullptr ? 0 : length);
  if (limit == 0) limit = OSPF_HARBOR_CHECK_XML_LIMIT;
  ospf_harbor_check::Document(*place).check(subject, text, limit);
  return place->fault;
}
