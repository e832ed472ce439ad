#include "reading.hpp"

#include <dlfcn.h>
#include <kelp/database.h>
#include <kelp/xml.h>

#include <cstring>

#include "support/clear_references.hpp"

namespace ospf_harbor_check_tests {

namespace {

constexpr std::size_t slack = 8;

template <typename Result, typename... Arguments>
Result call(const std::string &name, Arguments... arguments) {
  void *address = dlsym(RTLD_DEFAULT, name.c_str());
  if (address == nullptr) std::abort();
  return reinterpret_cast<Result (*)(Arguments...)>(address)(arguments...);
}

template <typename Rows>
auto named(const Rows &rows, const std::string &name, const char *prefix) ->
    typename Rows::value_type {
  for (const auto *row : rows) {
    if (prefix + std::string(row->name) == name) return row;
  }
  return nullptr;
}

constexpr std::uint32_t space = 0;

std::string number(std::uint64_t value) { return std::to_string(value); }

}  // namespace

std::vector<std::string> names_of(std::uint32_t kind) {
  std::vector<std::string> names;
  if (kind == OSPF_HARBOR_CHECK_OBJECT) {
    for (const auto *type : harbor::model::structures) names.emplace_back(type->name);
    for (const auto *type : harbor::model::all_enumerations) names.emplace_back(type->name);
    for (const auto *type : harbor::model::all_flag_sets) names.emplace_back(type->name);
  } else {
    for (const auto *table : harbor::model::all_tables) {
      names.push_back("tbl_" + std::string(table->name));
    }
  }
  return names;
}

Place::Place(std::uint32_t tracking) {
  kelp_handle_options options;
  kelp_handle_options_init(&options);
  options.state_tracking = tracking;
  database_ = kelp_database_open_private("image check", nullptr, nullptr);
  handle_ = kelp_handle_create(database_, &options, nullptr);
}

Place::~Place() {
  kelp_handle_destroy(handle_);
  kelp_database_close(database_, nullptr);
}

std::uint64_t Place::live_allocations() const {
  kelp_memory_statistics statistics{};
  kelp_database_memory(database_, &statistics);
  return statistics.live_allocations;
}

Read::Read(kelp_handle *handle, const Input &input) : handle_(handle), input_(input) {
  if (input.kind == OSPF_HARBOR_CHECK_OBJECT) {
    structure_ = named(harbor::model::structures, input.name, "");
    object_ = call<void *>(input.name + "_create", handle_, space);
  } else {
    table_ = named(harbor::model::all_tables, input.name, "tbl_");
  }
}

// Those of a record, in its order; of a key the one that holds it.
std::vector<const Structure *> Read::structures() const {
  if (table_ == nullptr) return {structure_};
  if (table_->key_structure == nullptr) return {table_->record};
  if (input_.kind == OSPF_HARBOR_CHECK_KEY) return {table_->key_structure};
  return {table_->key_structure, table_->record};
}

std::vector<Read::Held> Read::make() {
  std::vector<Held> held;
  if (input_.kind == OSPF_HARBOR_CHECK_KEY) {
    object_ = call<void *>(input_.name + "_pkey_create", handle_, space);
  }
  if (input_.kind != OSPF_HARBOR_CHECK_RECORD) return {{object_, structures()[0]}};
  std::uint32_t err = 0;
  record_ = call<void *>(input_.name + "_create_record", handle_, space, &err);
  void **slot = static_cast<kelp_record *>(record_)->objects;
  for (const Structure *type : structures()) {
    *slot = call<void *>(std::string(type->name) + "_create", handle_, space);
    held.push_back({*slot++, type});
  }
  return held;
}

Read::~Read() {
  std::uint32_t err = 0;
  if (record_ != nullptr) {
    void **slot = static_cast<kelp_record *>(record_)->objects;
    for (const Structure *type : structures()) {
      if (*slot != nullptr) encodings::clear_references(*slot, *type);
      ++slot;
    }
    call<void>(input_.name + "_destroy_record", handle_, space, record_, &err);
  }
  if (object_ == nullptr) return;
  if (const Structure *type = structures()[0]) encodings::clear_references(object_, *type);
  const bool is_key = input_.kind == OSPF_HARBOR_CHECK_KEY;
  call<void>(input_.name + (is_key ? "_pkey_destroy" : "_destroy"), handle_, space, object_);
}

std::string Read::take(const std::uint8_t *image, std::size_t size, std::size_t length,
                       bool reuse) {
  std::uint32_t err = 0;
  std::uint32_t used = 0;
  const auto told = static_cast<std::int32_t>(length);
  const std::uint32_t again = reuse ? 1 : 0;
  if (input_.kind == OSPF_HARBOR_CHECK_OBJECT) {
    used = call<std::uint32_t>(input_.name + "_unmarshal", handle_, space,
                               static_cast<const void *>(image), object_, told, again, &err);
  } else if (input_.kind == OSPF_HARBOR_CHECK_RECORD) {
    used = call<std::uint32_t>(input_.name + "_table_record_unmarshal", handle_, space, &record_,
                               static_cast<const void *>(image), told, again, &err);
  } else {
    used = call<std::uint32_t>(input_.name + "_table_pkey_unmarshal", handle_, space, &object_,
                               static_cast<const void *>(image), told, &err);
  }
  if (err != 0) return "reading gave error " + number(err);
  if (used != size) return "reading used " + number(used) + " of " + number(size) + " bytes";
  return {};
}

Bytes Read::image() const {
  // Twice what the longest object of the schema's fields takes, but for its arrays and texts.
  Bytes buffer(1 << 16);
  for (;;) {
    std::uint32_t err = 0;
    const auto room = static_cast<std::int32_t>(buffer.size() - slack);
    std::uint32_t used = 0;
    void *out = buffer.data();
    if (input_.kind == OSPF_HARBOR_CHECK_OBJECT) {
      used = call<std::uint32_t>(input_.name + "_marshal", handle_, space, out,
                                 static_cast<const void *>(object_), room, &err);
    } else if (input_.kind == OSPF_HARBOR_CHECK_RECORD) {
      used = call<std::uint32_t>(input_.name + "_table_record_marshal", handle_, space, out,
                                 static_cast<const void *>(record_), room, &err);
    } else {
      // A key is written out of a record that holds it.
      std::uint32_t ignored = 0;
      void *record = call<void *>(input_.name + "_create_record", handle_, space, &ignored);
      void **objects = static_cast<kelp_record *>(record)->objects;
      objects[0] = object_;
      used = call<std::uint32_t>(input_.name + "_table_pkey_marshal", handle_, space, out,
                                 static_cast<const void *>(record), room, &err);
      objects[0] = nullptr;
      call<void>(input_.name + "_destroy_record", handle_, space, record, &ignored);
    }
    if (err == KELP_ERR_NO_ROOM && buffer.size() < (1u << 28)) {
      buffer.assign(buffer.size() * 4, 0);
      continue;
    }
    buffer.resize(err == 0 ? used : 0);
    return buffer;
  }
}

std::string Read::take(kelp_xml_document *document) {
  std::uint32_t err = 0;
  char message[512] = "";
  const std::int32_t size = sizeof message;
  if (input_.kind == OSPF_HARBOR_CHECK_OBJECT) {
    const std::string path = "//" + input_.name;
    call<void>(input_.name + "_from_xml", handle_, space, path.c_str(), document, object_, &err,
               static_cast<char *>(message), size);
  } else {
    record_ = call<void *>(input_.name + "_table_record_from_xml", handle_, space, document, &err,
                           static_cast<char *>(message), size);
    if (record_ == nullptr) return "reading gave no record";
  }
  if (err != 0) return "reading gave error " + number(err) + ": " + message;
  return {};
}

std::string Read::document() const {
  std::string buffer(1 << 16, ' ');
  for (;;) {
    std::uint32_t err = 0;
    std::uint32_t used = 0;
    const auto room = static_cast<std::uint32_t>(buffer.size());
    if (input_.kind == OSPF_HARBOR_CHECK_OBJECT) {
      used = call<std::uint32_t>(input_.name + "_to_xml", handle_, space, input_.name.c_str(),
                                 buffer.data(), static_cast<const void *>(object_), room,
                                 std::uint32_t{0}, &err);
    } else {
      used = call<std::uint32_t>(input_.name + "_table_record_to_xml", handle_, space,
                                 buffer.data(), static_cast<const void *>(record_),
                                 static_cast<std::int32_t>(room), &err);
    }
    if (err == KELP_ERR_NO_ROOM && buffer.size() < (1u << 28)) {
      buffer.assign(buffer.size() * 4, ' ');
      continue;
    }
    buffer.resize(err == 0 ? used : 0);
    return buffer;
  }
}

namespace {

// On the heap and no byte longer, so that a sanitizer sees each byte read behind it.
std::unique_ptr<std::uint8_t[]> exact_copy(std::span<const std::uint8_t> image) {
  auto exact = std::make_unique<std::uint8_t[]>(image.size());
  if (!image.empty()) std::memcpy(exact.get(), image.data(), image.size());
  return exact;
}

}  // namespace

std::string read_once(kelp_handle *handle, const Input &input,
                      std::span<const std::uint8_t> image) {
  return Read(handle, input).take(exact_copy(image).get(), image.size(), image.size(), false);
}

// A selected arm that the image does not have, since its variant is below the arm's, is none that
// could be missing when it is written; everything that was read can be written.
std::string read_image(kelp_handle *handle, const Input &input,
                       std::span<const std::uint8_t> image) {
  const auto exact = exact_copy(image);
  std::string wrong;
  Read into_new(handle, input);
  wrong = into_new.take(exact.get(), image.size(), image.size(), false);
  if (!wrong.empty()) return wrong;
  // Keys have no reuse flag.
  if (input.kind != OSPF_HARBOR_CHECK_KEY) {
    wrong = into_new.take(exact.get(), image.size(), image.size(), true);
    if (!wrong.empty()) return "reused: " + wrong;
  }

  Bytes spared(image.begin(), image.end());
  spared.push_back(0);
  Read with_spare(handle, input);
  wrong = with_spare.take(spared.data(), image.size(), spared.size(), false);
  if (!wrong.empty()) return "with a spare byte: " + wrong;

  Bytes written = with_spare.image();
  if (written.empty()) return "what was read cannot be written";
  ospf_harbor_check_result result;
  if (ospf_harbor_check_image(input.kind, input.name.c_str(), written.data(), written.size(),
                              &result) != OSPF_HARBOR_FAULT_NONE) {
    return std::string("what was written is refused: ") + result.text;
  }
  const std::size_t size = written.size();
  written.push_back(0);
  Read again(handle, input);
  wrong = again.take(written.data(), size, written.size(), false);
  if (!wrong.empty()) return "what was written: " + wrong;
  written.pop_back();
  if (again.image() != written) return "what was written comes out otherwise";
  return {};
}

std::string read_document(kelp_handle *handle, const Input &input, const std::string &text) {
  const auto read = [&](const std::string &from, std::string &written) -> std::string {
    char message[512] = "";
    kelp_xml_document *document = kelp_xml_parse(from.data(), from.size(), message, sizeof message);
    if (document == nullptr) return message;
    std::string wrong;
    {
      Read object(handle, input);
      wrong = object.take(document);
      if (wrong.empty()) written = object.document();
    }
    kelp_xml_free(document);
    return wrong;
  };
  std::string first;
  std::string wrong = read(text, first);
  if (!wrong.empty()) return wrong;
  if (first.empty()) return "what was read cannot be written";
  // What stands for an enumeration without a value is no element: such a document cannot be read.
  if (first.find(" value out of range/>") != std::string::npos) return {};
  ospf_harbor_check_result result;
  if (ospf_harbor_check_xml(input.kind, input.name.c_str(), first.data(), first.size(),
                            std::size_t{1} << 30, &result) != OSPF_HARBOR_FAULT_NONE) {
    return std::string("what was written is refused: ") + result.text;
  }
  // A choice whose element the document lacked is written with a selector and no arm; the reader of
  // that makes the arm, so that the form is settled only from then on.
  std::string second;
  wrong = read(first, second);
  if (!wrong.empty()) return "what was written: " + wrong;
  std::string third;
  wrong = read(second, third);
  if (!wrong.empty()) return "what was written of it: " + wrong;
  if (third != second) return "what was written comes out otherwise";
  return {};
}

}  // namespace ospf_harbor_check_tests
