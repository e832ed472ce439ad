// A process that knows one edition of the schema. It is told what to do on its standard input, one
// step a line, and tells what came of it on its standard output.
//
//   peer describe              the rows of its schema
//   peer write on|off          tracking state or not: makes objects and writes their images
//   peer read on|off FILE      makes objects and reads into them the images that FILE holds
//   peer store FILE            keeps rows in a store; its steps stand in store_peer.hpp
//
//   object NAME                begins an object of a type, or a record of a table
//   value PATH VALUE           sets a field
//   state PATH BYTE            sets a field's state byte; elements PATH BYTE,...: of an array
//   ra-data                    has the image carry an ra-data block
//   end [reuse]                ends the object: it is written, or read and shown
#include <kelp/trace.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <map>
#include <memory>
#include <sstream>

#include "evolution/exchange.hpp"
#include "evolution/store_peer.hpp"
#include "module/message_text.hpp"
#include "support/hexadecimal.hpp"

namespace evolution {

namespace {

using namespace harbor::model;

const char *kind_name(Kind kind) {
  constexpr const char *names[] = {"u8",      "u16",   "u32",         "real",  "boolean",
                                   "address", "text",  "enumeration", "flags", "structure",
                                   "counter", "array", "reference",   "arm"};
  return names[static_cast<std::size_t>(kind)];
}

// What a field is made of: the type that it embeds, its elements or what its arm points at.
std::string_view part_of(const Field &field) {
  if (field.structure != nullptr) return field.structure->name;
  if (field.enumeration != nullptr) return field.enumeration->name;
  if (field.flag_set != nullptr) return field.flag_set->name;
  const bool holds = field.kind == Kind::array || field.kind == Kind::arm;
  return holds ? kind_name(field.held) : "-";
}

void describe() {
  for (const Enumeration *type : all_enumerations) {
    std::cout << "enumeration " << type->name << " " << int{type->variants} << " "
              << type->has_internal_range << "\n";
    for (const Member &member : type->members) {
      std::cout << "member " << member.name << " " << member.value << "\n";
    }
  }
  for (const FlagSet *type : all_flag_sets) {
    std::cout << "flags " << type->name << " " << int{type->variants} << " 0\n";
    for (const Member &member : type->members) {
      std::cout << "member " << member.name << " " << member.value << "\n";
    }
  }
  for (const Structure *type : structures) {
    std::cout << "structure " << type->name << " " << int{type->variants} << " "
              << type->is_choice() << "\n";
    for (const Field *field : type->fields) {
      std::cout << "field " << field->name << " " << kind_name(field->kind) << " "
                << int{field->since} << " " << part_of(*field) << " " << field->selector << "\n";
    }
  }
  for (const Table *table : all_tables) {
    std::cout << "table tbl_" << table->name << " " << table->luid << " " << table->record->name
              << " " << (table->key_structure == nullptr ? "-" : table->key_structure->name)
              << "\n";
  }
}

kelp_handle *make_handle(bool tracked) {
  kelp_error error{};
  kelp_database *database = kelp_database_open_private("peer", nullptr, &error);
  kelp_handle_options options;
  kelp_handle_options_init(&options);
  options.state_tracking = tracked ? KELP_TRACKING_ON : KELP_TRACKING_ABSENT;
  kelp_handle *handle = kelp_handle_create(database, &options, &error);
  if (handle == nullptr) give_up(error.text);
  return handle;
}

// "trace 6 <text>" for each message of the type side.
int print_message(void *, const kelp_trace_event *event) {
  const auto message = harbor::messages::type_message(event->index);
  char text[512];
  kelp_trace_format(event, message.text.c_str(), text, sizeof text);
  std::cout << "trace " << int{event->level} << " " << text << "\n";
  return 0;
}

std::map<std::string, std::vector<std::uint8_t>> images_in(const char *file) {
  std::map<std::string, std::vector<std::uint8_t>> images;
  std::ifstream in(file);
  for (std::string name, bytes; in >> name >> bytes;) images[name] = from_hex(bytes);
  return images;
}

void read_and_show(Exchanged &exchanged, const std::vector<std::uint8_t> &image, bool reuse) {
  kelp_trace_set_sink(print_message, nullptr);
  const std::uint32_t used = exchanged.read(image, reuse);
  kelp_trace_set_sink(nullptr, nullptr);
  std::cout << "consumed " << used << "\n";
  for (const bool raised : {false, true}) {
    for (const std::string &line : exchanged.show(raised)) {
      std::cout << (raised ? "raised " : "") << line << "\n";
    }
  }
}

void follow(kelp_handle *handle, const char *image_file) {
  std::map<std::string, std::vector<std::uint8_t>> images;
  if (image_file != nullptr) images = images_in(image_file);
  std::unique_ptr<Exchanged> exchanged;
  std::string name;
  for (std::string line; std::getline(std::cin, line);) {
    std::istringstream words(line);
    std::string step, path, value;
    words >> step >> path >> value;
    if (step == "object") {
      name = path;
      exchanged = std::make_unique<Exchanged>(handle, name);
    } else if (step == "value") {
      exchanged->set_value(path, value);
    } else if (step == "state") {
      exchanged->set_state(path, value);
    } else if (step == "elements") {
      exchanged->set_element_states(path, value);
    } else if (step == "ra-data") {
      exchanged->mark_ra_data();
    } else if (step != "end") {
      give_up("no step " + step);
    } else if (image_file == nullptr) {
      const std::vector<std::uint8_t> image = exchanged->image();
      std::cout << name << " " << hexadecimal(image.data(), image.size()) << "\n";
    } else {
      if (images.count(name) == 0) give_up("no image of " + name);
      std::cout << "object " << name << "\n";
      read_and_show(*exchanged, images[name], path == "reuse");
    }
  }
}

int run(int argc, char **argv) {
  const std::string verb = argc > 1 ? argv[1] : "";
  if (verb == "describe") {
    describe();
    return 0;
  }
  if (verb == "store" && argc == 3) return keep_store(argv[2]);
  if ((verb != "write" || argc != 3) && (verb != "read" || argc != 4)) {
    std::fprintf(stderr, "usage: %s describe | write on|off | read on|off FILE | store FILE\n",
                 argv[0]);
    return 2;
  }
  kelp_handle *handle = make_handle(std::strcmp(argv[2], "on") == 0);
  follow(handle, verb == "read" ? argv[3] : nullptr);
  return 0;
}

}  // namespace

}  // namespace evolution

int main(int argc, char **argv) {
  try {
    return evolution::run(argc, argv);
  } catch (const std::exception &failure) {
    std::fprintf(stderr, "evolution peer: %s\n", failure.what());
    return 2;
  }
}
