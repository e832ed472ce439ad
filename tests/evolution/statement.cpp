#include "evolution/statement.hpp"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "support/hexadecimal.hpp"

namespace evolution {

namespace {

constexpr std::size_t variant_and_flags = 2;
constexpr std::size_t ra_data_block = 9;
constexpr std::size_t jump_word = 4;
constexpr std::size_t record_frame = 27 + 16;

void add_number(Bytes &bytes, std::uint64_t value, int width) {
  for (int shift = 8 * (width - 1); shift >= 0; shift -= 8) {
    bytes.push_back(static_cast<std::uint8_t>(value >> shift));
  }
}

void add_digits(Bytes &bytes, const std::string &hexadecimal) {
  const Bytes added = from_hex(hexadecimal);
  bytes.insert(bytes.end(), added.begin(), added.end());
}

// A value of a primitive, or an identifier, from its text.
void add_plain(Bytes &bytes, const std::string &kind, const std::string &text) {
  if (kind == "u8" || kind == "boolean") {
    add_number(bytes, std::stoul(text), 1);
  } else if (kind == "u16") {
    add_number(bytes, std::stoul(text), 2);
  } else if (kind == "u32") {
    add_number(bytes, std::stoul(text), 4);
  } else if (kind == "real") {
    const double value = std::stod(text);
    std::uint64_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    add_number(bytes, bits, 8);
  } else if (kind == "address") {
    bytes.push_back(4);
    bytes.push_back(255);
    add_digits(bytes, text);
    bytes.resize(bytes.size() + 16);
  } else if (kind == "text") {
    add_number(bytes, text.size(), 4);
    bytes.insert(bytes.end(), text.begin(), text.end());
  } else {
    add_digits(bytes, text);
  }
}

bool is_light(const Field &field) { return field.kind == "enumeration" || field.kind == "flags"; }
bool is_structure(const Field &field, const Edition &edition) {
  return field.kind == "structure" ||
         (field.kind == "arm" &&
          std::any_of(edition.structures.begin(), edition.structures.end(),
                      [&](const Structure &type) { return type.name == field.part; }));
}
bool has_state(const Field &field) { return field.kind != "counter"; }

const Light *light_of(const Edition &edition, const std::string &name) {
  for (const Light &type : edition.lights) {
    if (type.name == name) return &type;
  }
  return nullptr;
}
const Table *table_of(const Edition &edition, const std::string &name) {
  for (const Table &table : edition.tables) {
    if (table.name == name) return &table;
  }
  return nullptr;
}

std::string joined(const std::vector<std::uint8_t> &numbers) {
  std::string text;
  for (const std::uint8_t number : numbers) {
    text += (text.empty() ? "" : ",") + std::to_string(number);
  }
  return text;
}

std::vector<std::string> items(const std::string &list) {
  std::vector<std::string> parts;
  std::size_t at = 0;
  while (at < list.size()) {
    const std::size_t end = std::min(list.find(',', at), list.size());
    parts.push_back(list.substr(at, end - at));
    at = end + 1;
  }
  return parts;
}

}  // namespace

// --- contents -----------------------------------------------------------------------------------

// FNV-1a over path, salt and round.
std::uint32_t Contents::number(const std::string &path) const {
  std::uint32_t hash = 2166136261u;
  const auto mix = [&](std::uint32_t byte) { hash = (hash ^ (byte & 0xFF)) * 16777619u; };
  for (const char c : path) mix(static_cast<std::uint8_t>(c));
  mix(salt_);
  mix(round_);
  return hash;
}

std::string Contents::element(const std::string &path, const std::string &kind) const {
  const std::uint32_t value = number(path);
  char digits[16];
  std::snprintf(digits, sizeof digits, "%08x", value);
  if (kind == "u8") return std::to_string(value >> 8 & 0xFF);
  if (kind == "u16") return std::to_string(value >> 8 & 0xFFFF);
  if (kind == "boolean") return std::to_string(value >> 16 & 1);
  if (kind == "address") return digits;
  if (kind == "text") return "t" + std::string(digits);
  if (kind == "real") {
    char text[64];
    std::snprintf(text, sizeof text, "%.17g", value / 4.0);
    return text;
  }
  return std::to_string(value);
}

std::string Contents::value(const std::string &path, const Field &field) const {
  if (is_light(field)) return std::to_string(light_value(path, edition_.light(field.part)));
  if (field.kind == "counter") return std::to_string(array_length_);
  if (field.kind == "arm") {
    return is_structure(field, edition_) ? "{}" : element(path, field.part);
  }
  if (field.kind == "reference") {
    std::string digits;
    for (int part = 0; part < 5; ++part) {
      char text[32];
      std::snprintf(text, sizeof text, "%08x%08x", number(path + std::to_string(2 * part)),
                    number(path + std::to_string(2 * part + 1)));
      digits += text;
    }
    return digits;
  }
  if (field.kind == "array") {
    std::string list;
    for (std::uint32_t index = 0; index < array_length_; ++index) {
      list += (index == 0 ? "" : ",") + element(path + std::to_string(index), field.part);
    }
    return list;
  }
  return element(path, field.kind);
}

std::uint32_t Contents::light_value(const std::string &path, const Light &type) const {
  const auto count = static_cast<std::uint32_t>(type.members.size());
  if (type.is_flags) {
    const std::uint32_t all = (1u << count) - 1;
    return round_ == 0 ? all : number(path) >> 8 & all;
  }
  return type.members[round_ == 0 ? count - 1 : (number(path) >> 8) % count].value;
}

std::uint8_t Contents::state(const std::string &path) const {
  return static_cast<std::uint8_t>(number(path + " state") >> 8);
}

std::vector<std::uint8_t> Contents::element_states(const std::string &path) const {
  std::vector<std::uint8_t> states;
  for (std::uint32_t index = 0; index < array_length_; ++index) {
    states.push_back(state(path + std::to_string(index)));
  }
  return states;
}

// Each value of the selector has its round.
std::uint32_t Contents::selected(const Structure &choice) const {
  for (const Field &field : choice.fields) {
    if (field.kind != "enumeration") continue;
    const auto &members = edition_.light(field.part).members;
    return members[(salt_ + members.size() - 1 - round_ % members.size()) % members.size()].value;
  }
  return UINT32_MAX;
}

void Contents::add_steps(const Structure &type, const std::string &prefix, bool tracked,
                         std::vector<std::string> &lines) const {
  for (const Field &field : type.fields) {
    const std::string path = prefix + field.name;
    const bool is_there = field.kind != "arm" || field.selector == selected(type);
    const bool is_empty = field.kind == "array" && array_length_ == 0;
    // Setting an arm sets the selector; elements bring their counter along.
    const bool is_set_by_others =
        field.kind == "counter" || (type.is_choice && field.kind == "enumeration");
    if (is_there && !is_empty && !is_set_by_others && field.kind != "structure") {
      lines.push_back("value " + path + " " + value(path, field));
    }
    if (is_there && is_structure(field, edition_)) {
      add_steps(edition_.structure(field.part), path + ".", tracked, lines);
    }
    if (!tracked || !has_state(field)) continue;
    lines.push_back("state " + path + " " + std::to_string(state(path)));
    if (field.kind == "array" && !is_empty) {
      lines.push_back("elements " + path + " " + joined(element_states(path)));
    }
  }
}

std::vector<std::string> Contents::steps(const std::string &name, bool tracked) const {
  std::vector<std::string> lines;
  if (const Light *light = light_of(edition_, name)) {
    lines.push_back("value . " + std::to_string(light_value(name, *light)));
  } else if (const Table *table = table_of(edition_, name)) {
    for (const std::string &object : table->objects) {
      add_steps(edition_.structure(object), object + ".", tracked, lines);
    }
  } else {
    add_steps(edition_.structure(name), "", tracked, lines);
  }
  return lines;
}

// --- the image ----------------------------------------------------------------------------------

namespace {

Bytes field_image(const Writing &writing, const Structure &type, const Field &field,
                  const std::string &prefix) {
  const Contents &contents = writing.contents;
  const std::string path = prefix + field.name;
  Bytes bytes;
  if (field.kind == "array") {
    for (const std::string &element : items(contents.value(path, field))) {
      add_plain(bytes, field.part, element);
    }
    if (writing.tracked && contents.array_length() != 0) {
      bytes.push_back(contents.state(path));
      for (const std::uint8_t state : contents.element_states(path)) bytes.push_back(state);
    }
    return bytes;
  }
  if (field.kind == "counter") {
    add_number(bytes, contents.array_length(), 4);
    return bytes;
  }
  const bool is_left_out = field.kind == "arm" && field.selector != contents.selected(type);
  if (type.is_choice && field.kind == "enumeration") {
    const Light &selector = contents.edition().light(field.part);
    add_number(bytes, static_cast<std::uint64_t>(selector.variants - 1), 1);
    add_number(bytes, contents.selected(type), 4);
  } else if (is_light(field)) {
    bytes = image(writing, contents.edition().light(field.part), path);
  } else if (is_structure(field, contents.edition())) {
    if (!is_left_out) {
      bytes = image(writing, contents.edition().structure(field.part), path + ".", false);
    }
  } else if (!is_left_out) {
    add_plain(bytes, field.kind == "arm" ? field.part : field.kind, contents.value(path, field));
  }
  if (writing.tracked) bytes.push_back(contents.state(path));
  return bytes;
}

}  // namespace

Bytes image(const Writing &writing, const Structure &type, const std::string &prefix,
            bool is_whole) {
  const bool has_ra_data = is_whole && writing.ra_data;
  Bytes bytes;
  add_number(bytes, static_cast<std::uint64_t>(type.variants - 1), 1);
  add_number(bytes, (writing.tracked ? 8u : 0u) | (has_ra_data ? 32u : 0u), 1);
  if (has_ra_data) bytes.resize(bytes.size() + ra_data_block);
  Bytes fields;
  for (int floor = 0; floor < type.variants; ++floor) {
    for (const Field &field : type.fields) {
      if (field.since != floor) continue;
      const Bytes one = field_image(writing, type, field, prefix);
      fields.insert(fields.end(), one.begin(), one.end());
    }
  }
  add_number(bytes, jump_word + fields.size(), 4);
  bytes.insert(bytes.end(), fields.begin(), fields.end());
  return bytes;
}

Bytes image(const Writing &writing, const Light &type, const std::string &path) {
  Bytes bytes;
  add_number(bytes, static_cast<std::uint64_t>(type.variants - 1), 1);
  const std::uint32_t value = writing.contents.light_value(path, type);
  if (type.is_flags) {
    add_number(bytes, 5, 4);
    add_number(bytes, value, 1);
  } else {
    add_number(bytes, type.counts_from_one ? value - 1 : value, 4);
  }
  return bytes;
}

// --- the reader ---------------------------------------------------------------------------------

namespace {

// What one reader makes of one writer's image.
class Reader {
 public:
  Reader(const Writing &writing, const Reading &reading) : writing_(writing), reading_(reading) {}

  // The messages in the order in which objects end: those inside come first.
  std::size_t pass_over(const Structure &known, const Structure &written, const std::string &prefix,
                        bool is_whole) {
    const std::size_t jump_at =
        variant_and_flags + (is_whole && writing_.ra_data ? ra_data_block : 0);
    const std::size_t end = image(writing_, written, prefix, is_whole).size();
    std::size_t position = jump_at + jump_word;
    for (int floor = 0; floor < std::min(known.variants, written.variants); ++floor) {
      for (const Field &field : written.fields) {
        if (field.since != floor) continue;
        const bool is_left_out =
            field.kind == "arm" && field.selector != writing_.contents.selected(written);
        if (!is_left_out && is_structure(field, writing_.contents.edition())) {
          pass_over(reading_.edition.structure(field.part),
                    writing_.contents.edition().structure(field.part), prefix + field.name + ".",
                    false);
        }
        position += field_image(writing_, written, field, prefix).size();
      }
    }
    if (end > position) {
      lines.push_back("trace 6 offset_jump read_len " + std::to_string(position) +
                      " offset_jump_base " + std::to_string(jump_at) + " _kelp_variant_jump " +
                      std::to_string(end - jump_at));
    }
    return end;
  }

  // written: the object in the image; null where the image has none and the destination keeps what
  // it held. held: null for an object that was new.
  void tell(const Structure &known, const Structure *written, const Contents *held,
            const std::string &prefix, bool raised) {
    const int variant = variant_of(known, written);
    for (const Field &field : known.fields) {
      const std::string path = prefix + field.name;
      const bool arrives = written != nullptr && field.since <= variant;
      const bool is_refused = !raised && field.since > variant;
      const Told told = value_of(known, written, field, arrives, held, prefix);
      std::string line = (raised ? "raised " : "") + path;
      line += is_refused ? " 43 - -" : " 0 " + told.value + " " + told.variant;
      lines.push_back(line + " " + states_of(field, arrives, held, path, is_refused));
      if (is_refused || told.nested == nullptr) continue;
      tell(*told.nested, told.written, told.held, path + ".", raised);
    }
  }

  int variant_of(const Structure &known, const Structure *written) const {
    return (written == nullptr ? known.variants : std::min(known.variants, written->variants)) - 1;
  }

  std::vector<std::string> lines;

 private:
  struct Told {
    std::string value;
    std::string variant = "-";
    const Structure *nested = nullptr;  // with what it has of the image and of earlier
    const Structure *written = nullptr;
    const Contents *held = nullptr;
  };

  static std::string new_value(const Field &field) {
    if (field.kind == "address") return "unset";
    if (field.kind == "text") return "''";
    if (field.kind == "reference") return std::string(80, '0');
    if (field.kind == "array") return "[]";
    return "0";
  }
  static std::string shown(const std::string &kind, const std::string &value) {
    if (kind == "text") return "'" + value + "'";
    if (kind == "array") return "[" + value + "]";
    return value;
  }

  Told value_of(const Structure &known, const Structure *written, const Field &field, bool arrives,
                const Contents *held, const std::string &prefix) const {
    const std::string path = prefix + field.name;
    const Contents &sent = writing_.contents;
    Told told;
    const bool is_object = is_structure(field, reading_.edition);
    const Contents *source = arrives ? &sent : held;
    if (field.kind == "arm") {
      const bool is_sent = arrives && field.selector == sent.selected(*written);
      const bool was_held = held != nullptr && field.selector == held->selected(known);
      source = is_sent ? &sent : was_held ? held : nullptr;
      if (source == nullptr) {
        told.value = "none";
        return told;
      }
      arrives = is_sent;
      if (!was_held) held = nullptr;
    }
    if (is_object) {
      told.value = "{}";
      told.nested = &reading_.edition.structure(field.part);
      told.written = arrives ? &sent.edition().structure(field.part) : nullptr;
      told.held = held;
      if (field.kind == "structure") {
        told.variant = std::to_string(variant_of(*told.nested, told.written));
      }
      return told;
    }
    if (is_light(field)) {
      const int variants = reading_.edition.light(field.part).variants;
      const int seen =
          arrives ? std::min(variants, sent.edition().light(field.part).variants) : variants;
      told.variant = std::to_string(seen - 1);
      if (source == nullptr) {
        told.value = "0";
      } else if (known.is_choice) {
        told.value = std::to_string(source->selected(source == &sent ? *written : known));
      } else {
        told.value = source->value(path, field);
      }
      return told;
    }
    told.value = source == nullptr ? new_value(field)
                                   : shown(field.kind == "arm" ? field.part : field.kind,
                                           source->value(path, field));
    return told;
  }

  // State bytes come with the fields of a tracked image; an empty array sends none.
  std::string states_of(const Field &field, bool arrives, const Contents *held,
                        const std::string &path, bool is_refused) const {
    if (!reading_.tracked || !has_state(field)) return "-";
    const Contents &sent = writing_.contents;
    const bool is_array = field.kind == "array";
    const bool is_sent = arrives && writing_.tracked && (!is_array || sent.array_length() != 0);
    const Contents *source = is_sent ? &sent : held;
    std::string states = source == nullptr ? "0" : std::to_string(source->state(path));
    const std::uint32_t length = arrives           ? sent.array_length()
                                 : held == nullptr ? 0
                                                   : held->array_length();
    if (is_array && !is_refused && source != nullptr && length != 0) {
      states += "," + joined(source->element_states(path));
    }
    return states;
  }

  const Writing &writing_;
  const Reading &reading_;
};

std::string bits_of(std::uint32_t value, const Light &known) {
  std::string text = std::to_string(value);
  for (std::uint32_t bit = 0; bit < 8; ++bit) {
    text += bit >= known.members.size() ? "?" : (value >> bit & 1) != 0 ? "1" : "0";
  }
  return text;
}

std::vector<std::string> light_report(const Writing &writing, const Light &known,
                                      const Light &written) {
  const std::uint32_t value = writing.contents.light_value(written.name, written);
  std::string names;
  for (const Member &member : known.members) {
    const bool is_on = known.is_flags ? (value >> member.value & 1) != 0 : value == member.value;
    if (is_on) names += (names.empty() ? "" : " ") + member.name;
  }
  if (!known.is_flags && names.empty()) names = "Enum value out of range";
  std::vector<std::string> lines;
  lines.push_back("consumed " + std::to_string(image(writing, written, written.name).size()));
  const std::string value_line =
      "value " + (known.is_flags ? bits_of(value, known) : std::to_string(value)) + " variant " +
      std::to_string(std::min(known.variants, written.variants) - 1);
  const std::string print_line = known.name + "@" + known.name + ":" + names;
  for (const std::string before : {"", "raised "}) {
    lines.push_back(before + value_line);
    lines.push_back(before + print_line);
  }
  return lines;
}

}  // namespace

std::vector<std::string> report(const Writing &writing, const Reading &reading,
                                const std::string &name) {
  const Edition &sender = writing.contents.edition();
  if (const Light *known = light_of(reading.edition, name)) {
    return light_report(writing, *known, sender.light(name));
  }
  const Table *table = table_of(reading.edition, name);
  const std::vector<std::string> objects =
      table == nullptr ? std::vector<std::string>{name} : table->objects;
  Reader reader(writing, reading);
  std::size_t consumed = table == nullptr ? 0 : record_frame;
  for (const std::string &object : objects) {
    const std::string prefix = table == nullptr ? "" : object + ".";
    consumed +=
        reader.pass_over(reading.edition.structure(object), sender.structure(object), prefix, true);
  }
  reader.lines.push_back("consumed " + std::to_string(consumed));
  for (const bool raised : {false, true}) {
    for (const std::string &object : objects) {
      const std::string prefix = table == nullptr ? "" : object + ".";
      const Structure &known = reading.edition.structure(object);
      const Structure &written = sender.structure(object);
      if (!raised) {
        reader.lines.push_back(prefix + " variant " +
                               std::to_string(reader.variant_of(known, &written)));
      }
      reader.tell(known, &written, reading.held, prefix, raised);
    }
  }
  return reader.lines;
}

}  // namespace evolution
