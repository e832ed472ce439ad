#include "definition.hpp"

#include <md5.h>

#include <array>

namespace emit {

using harbor::model::Member;

namespace {

std::string members(std::span<const Member> all) {
  std::string text;
  for (const Member &member : all) {
    text += std::string(member.name) + " " + std::to_string(member.value) + "\n";
  }
  return text;
}

}  // namespace

std::string md5(const std::string &text) {
  std::array<char, MD5_DIGEST_STRING_LENGTH> digits{};
  MD5Data(reinterpret_cast<const std::uint8_t *>(text.data()), text.size(), digits.data());
  return digits.data();
}

std::string definition(const Enumeration &type) {
  std::string text =
      "enum " + std::string(type.name) + " variants " + std::to_string(type.variants) + " limits";
  for (std::size_t at = 0; at < type.variants; ++at) {
    text += " " + std::to_string(type.limits[at]);
  }
  if (type.has_internal_range) text += " internal";
  return text + "\n" + members(type.members);
}

std::string definition(const FlagSet &type) {
  return "flag " + std::string(type.name) + "\n" + members(type.members);
}

std::string definition(const Structure &type) {
  std::string text =
      "type " + std::string(type.name) + " variants " + std::to_string(type.variants) + "\n";
  for (const Field *field : type.fields) {
    text += std::string(field->name) + " " + storage_type(*field) + " " +
            std::to_string(static_cast<int>(field->kind)) + " since " +
            std::to_string(field->since);
    if (field->kind == Kind::arm) text += " selected by " + std::to_string(field->selector);
    if (field->structure != nullptr) text += " " + md5(definition(*field->structure));
    if (field->enumeration != nullptr) text += " " + md5(definition(*field->enumeration));
    if (field->flag_set != nullptr) text += " " + md5(definition(*field->flag_set));
    text += "\n";
  }
  return text;
}

std::string definition(const Table &table) {
  std::string text = "table " + std::string(table.name) + "\nrecord " +
                     std::string(table.record->name) + " " + md5(definition(*table.record)) +
                     "\nkey ";
  if (table.key_structure != nullptr) {
    text += std::string(table.key_structure->name) + " " + md5(definition(*table.key_structure));
  } else {
    text += std::string(table.key->name);
  }
  return text + "\n";
}

std::string manifest_md5(const std::string &head, const std::string &definition) {
  return md5("manifest " + head + "\n" + definition);
}

}  // namespace emit
