// Writes the schema's records in the languages of the peers, and the code that fills a record of
// each with the same data, so that all are measured on one shape. A program of the build, run once
// with the folder to write into.
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "model/layout.hpp"
#include "model/lists.hpp"

namespace {

using namespace harbor::model;

constexpr const Structure *measured[] = {&types::ospf_neighbor, &types::ospf_interface,
                                         &types::link_scope_lsa};
constexpr std::uint32_t oid_size = 40;
constexpr std::uint32_t selected_arm = 2;  // the key with its algorithm

std::string text(std::string_view view) { return std::string(view); }

// --- names ------------------------------------------------------------------------------------

std::string camel(std::string_view name, bool big) {
  std::string result;
  bool raise = big;
  for (const char c : name) {
    if (c == '_') {
      raise = true;
      continue;
    }
    result += raise ? static_cast<char>(std::toupper(c)) : c;
    raise = false;
  }
  return result;
}

// Field names in the peers' languages, which want them in lower case.
std::string lower(std::string_view name) {
  std::string result;
  for (const char c : name) result += static_cast<char>(std::tolower(c));
  return result;
}

// A record's structures, the innermost first.
void collect(const Structure &type, std::vector<const Structure *> &order) {
  for (const Structure *known : order) {
    if (known == &type) return;
  }
  for (const Field *field : type.fields) {
    if (field->structure != nullptr) collect(*field->structure, order);
  }
  order.push_back(&type);
}

std::vector<const Structure *> all_measured() {
  std::vector<const Structure *> order;
  for (const Structure *type : measured) collect(*type, order);
  return order;
}

std::set<const Enumeration *> enumerations_of(const std::vector<const Structure *> &types) {
  std::set<const Enumeration *> result;
  for (const Structure *type : types) {
    for (const Field *field : type->fields) {
      if (field->enumeration != nullptr) result.insert(field->enumeration);
    }
  }
  return result;
}

// A counter is the length of its list in every peer.
bool is_carried(const Field &field) { return field.kind != Kind::counter; }

Kind stored(const Field &field) {
  return field.kind == Kind::array || field.kind == Kind::arm ? field.held : field.kind;
}

bool is_byte_array(const Field &field) {
  return field.kind == Kind::array && field.held == Kind::u8;
}
bool is_list(const Field &field) { return field.kind == Kind::array && !is_byte_array(field); }

// --- the languages ------------------------------------------------------------------------------

std::string proto_type(const Field &field) {
  if (is_byte_array(field)) return "bytes";
  switch (stored(field)) {
    case Kind::u8:
    case Kind::u16:
    case Kind::u32:
    case Kind::flags:
      return "uint32";
    case Kind::real:
      return "double";
    case Kind::boolean:
      return "bool";
    case Kind::text:
      return "string";
    case Kind::enumeration:
      return text(field.enumeration->name);
    case Kind::structure:
      return text(field.structure->name);
    default:
      return "bytes";
  }
}

void write_proto(std::ostream &out) {
  const auto types = all_measured();
  out << "syntax = \"proto2\";\npackage peer_proto;\noption optimize_for = SPEED;\n";
  for (const Enumeration *type : enumerations_of(types)) {
    out << "enum " << type->name << " {\n";
    for (const Member &member : type->members) {
      out << "  " << member.name << " = " << member.value << ";\n";
    }
    out << "}\n";
  }
  for (const Structure *type : types) {
    out << "message " << type->name << " {\n";
    int number = 0;
    for (const Field *field : type->fields) {
      if (!is_carried(*field)) continue;
      out << "  " << (is_list(*field) ? "repeated " : "optional ") << proto_type(*field) << " "
          << lower(field->name) << " = " << ++number
          << (is_list(*field) && stored(*field) == Kind::u32 ? " [packed = true]" : "") << ";\n";
    }
    out << "}\n";
  }
}

std::string flatbuffers_type(const Field &field) {
  if (is_byte_array(field)) return "[ubyte]";
  switch (stored(field)) {
    case Kind::u8:
    case Kind::flags:
      return "ubyte";
    case Kind::u16:
      return "ushort";
    case Kind::u32:
      return is_list(field) ? "[uint]" : "uint";
    case Kind::real:
      return "double";
    case Kind::boolean:
      return "bool";
    case Kind::text:
      return "string";
    case Kind::enumeration:
      return "uint";
    case Kind::structure:
      return text(field.structure->name);
    default:
      return is_list(field) ? "[string]" : "[ubyte]";
  }
}

void write_flatbuffers(std::ostream &out) {
  out << "namespace peer_flat;\n";
  for (const Structure *type : all_measured()) {
    out << "table " << type->name << " {\n";
    for (const Field *field : type->fields) {
      if (!is_carried(*field)) continue;
      out << "  " << lower(field->name) << ":" << flatbuffers_type(*field) << ";\n";
    }
    out << "}\n";
  }
}

std::string capnp_type(const Field &field) {
  if (is_byte_array(field)) return "Data";
  switch (stored(field)) {
    case Kind::u8:
    case Kind::flags:
      return "UInt8";
    case Kind::u16:
      return "UInt16";
    case Kind::u32:
    case Kind::enumeration:
      return is_list(field) ? "List(UInt32)" : "UInt32";
    case Kind::real:
      return "Float64";
    case Kind::boolean:
      return "Bool";
    case Kind::text:
      return "Text";
    case Kind::structure:
      return camel(field.structure->name, true);
    default:
      return is_list(field) ? "List(Data)" : "Data";
  }
}

void write_capnp(std::ostream &out) {
  out << "@0xb5f2c1d7a0934e61;\nusing Cxx = import \"/capnp/c++.capnp\";\n"
         "$Cxx.namespace(\"peer_capnp\");\n";
  for (const Structure *type : all_measured()) {
    out << "struct " << camel(type->name, true) << " {\n";
    int number = 0;
    for (const Field *field : type->fields) {
      if (!is_carried(*field)) continue;
      out << "  " << camel(lower(field->name), false) << " @" << number++ << " :"
          << capnp_type(*field) << ";\n";
    }
    out << "}\n";
  }
}

// The documents that the library writes, as YANG: enumerations and flags are empty elements inside
// an element, arms are named after the selector.
void write_yang_fields(std::ostream &out, const Structure &type, const std::string &margin) {
  for (const Field *field : type.fields) {
    const std::string name = text(field->name);
    const auto leaf = [&](const std::string &kind, const std::string &as) {
      out << margin << kind << " " << as << " { type string; }\n";
    };
    const auto members = [&](const auto &of) {
      out << margin << "container " << name << " {\n";
      for (const Member &member : of) {
        out << margin << "  leaf " << member.name << " { type empty; }\n";
      }
      out << margin << "}\n";
    };
    switch (field->kind) {
      case Kind::reference:
        break;
      case Kind::u8:
      case Kind::u16:
      case Kind::u32:
      case Kind::counter:
        out << margin << "leaf " << name << " { type uint32; }\n";
        break;
      case Kind::array:
        if (field->held == Kind::address) {
          leaf("leaf-list", name);
        } else {
          out << margin << "leaf-list " << name << " { type uint32; }\n";
        }
        break;
      case Kind::enumeration:
        members(field->enumeration->members);
        break;
      case Kind::flags:
        members(field->flag_set->members);
        break;
      case Kind::structure:
        out << margin << "container " << name << " {\n";
        write_yang_fields(out, *field->structure, margin + "  ");
        out << margin << "}\n";
        break;
      case Kind::arm: {
        const std::string as = "auth_type_selection-" + name;
        if (field->held != Kind::structure) {
          leaf("leaf", as);
          break;
        }
        out << margin << "container " << as << " {\n";
        write_yang_fields(out, *field->structure, margin + "  ");
        out << margin << "}\n";
        break;
      }
      default:
        leaf("leaf", name);
    }
  }
}

void write_yang(std::ostream &out) {
  out << "module peers {\n  yang-version 1.1;\n  namespace \"urn:peers\";\n  prefix p;\n";
  for (const Structure *type : measured) {
    out << "  container " << type->name << " {\n    config false;\n";
    write_yang_fields(out, *type, "    ");
    out << "  }\n";
  }
  out << "}\n";
}

// --- the data -----------------------------------------------------------------------------------

// One value for each field, the same for whoever walks the record in order.
class Values {
 public:
  std::uint32_t number(const Field &field) {
    const std::uint32_t at = ++last_;
    switch (stored(field)) {
      case Kind::u8:
        return at & 0x7F;
      case Kind::u16:
        return 1000 + at;
      case Kind::boolean:
        return at & 1;
      case Kind::flags:
        return 1 + at % ((1u << field.flag_set->members.size()) - 1);
      case Kind::enumeration:
        return field.enumeration->members[at % field.enumeration->members.size()].value;
      default:
        return 0x0A000000 + 7 * at;
    }
  }
  std::string words() { return "value number " + std::to_string(++last_); }

 private:
  std::uint32_t last_ = 0;
};

std::uint32_t count_of(const Field &field) { return field.name == "raw_data" ? 64 : 4; }

std::string bytes_of(std::uint32_t address) {
  std::string result;
  for (const int shift : {24, 16, 8, 0}) {
    result += (result.empty() ? "" : ", ") + std::to_string(address >> shift & 255);
  }
  return result;
}

// Fills a record by statements in the words of one peer.
class Fill {
 public:
  Fill(std::ostream &out) : out_(out) {}
  virtual ~Fill() = default;

  void record(const Structure &type) {
    values_ = {};
    open(type);
    fields(type, "m");
    out_ << "}\n";
  }

 protected:
  void fields(const Structure &type, const std::string &object) {
    const bool choice = type.is_choice();
    for (const Field *field : type.fields) {
      if (!is_carried(*field)) continue;
      if (field->kind == Kind::arm && field->selector != selected_arm) continue;
      if (choice && field->kind == Kind::enumeration) {
        number(type, *field, object, selected_arm);
      } else if (field->kind == Kind::reference) {
        reference(type, *field, object);
      } else if (stored(*field) == Kind::structure) {
        const std::string child = "m" + std::to_string(++children_);
        out_ << "  {\n";
        structure(type, *field, object, child);
        fields(*field->structure, child);
        structure_end(type, *field, object, child);
        out_ << "  }\n";
      } else if (field->kind == Kind::array) {
        std::vector<std::uint32_t> elements;
        for (std::uint32_t at = 0; at < count_of(*field); ++at) {
          elements.push_back(values_.number(*field));
        }
        array(type, *field, object, elements);
      } else if (stored(*field) == Kind::text) {
        words(type, *field, object, values_.words());
      } else if (stored(*field) == Kind::address) {
        address(type, *field, object, values_.number(*field));
      } else {
        number(type, *field, object, values_.number(*field));
      }
    }
  }
  static std::string joined(const std::vector<std::uint32_t> &elements) {
    std::string result;
    for (const std::uint32_t element : elements) {
      result += (result.empty() ? "" : ", ") + std::to_string(element) + "u";
    }
    return result;
  }

  virtual void open(const Structure &type) = 0;
  virtual void number(const Structure &, const Field &, const std::string &, std::uint32_t) = 0;
  virtual void words(const Structure &, const Field &, const std::string &,
                     const std::string &) = 0;
  virtual void address(const Structure &, const Field &, const std::string &, std::uint32_t) = 0;
  virtual void array(const Structure &, const Field &, const std::string &,
                     const std::vector<std::uint32_t> &) = 0;
  virtual void reference(const Structure &, const Field &, const std::string &) = 0;
  virtual void structure(const Structure &, const Field &, const std::string &,
                         const std::string &) = 0;
  virtual void structure_end(const Structure &, const Field &, const std::string &,
                             const std::string &) {}

  std::ostream &out_;

 private:
  Values values_;
  int children_ = 0;
};

std::string operation(const Structure &type, const Field &field, const char *suffix) {
  return text(type.name) + "_" + text(field.name) + "_" + suffix;
}

class FillHarbor : public Fill {
 public:
  using Fill::Fill;

 private:
  void open(const Structure &type) override {
    out_ << "inline void fill(kelp_handle *h, " << type.name
         << " *m) {\n  std::uint32_t err = 0;\n";
  }
  void set(const Structure &type, const Field &field, const char *suffix, const std::string &object,
           const std::string &value) {
    out_ << "  " << operation(type, field, suffix) << "(h, 0, " << object << ", " << value
         << ", &err);\n  bench::require(err);\n";
  }
  void number(const Structure &type, const Field &field, const std::string &object,
              std::uint32_t value) override {
    set(type, field, "set_value", object, std::to_string(value));
  }
  void words(const Structure &type, const Field &field, const std::string &object,
             const std::string &value) override {
    if (field.kind == Kind::arm) {
      out_ << "  {\n    kelp_vstring *text = kelp_vstring_create(h, 0);\n    "
              "kelp_vstring_assign(h, 0, text, \""
           << value << "\", " << value.size() << ", &err);\n";
      set(type, field, "set", object, "text");
      out_ << "  }\n";
      return;
    }
    out_ << "  {\n    kelp_vstring text{};\n    kelp_vstring_assign(h, 0, &text, \"" << value
         << "\", " << value.size() << ", &err);\n";
    set(type, field, "set", object, "&text");
    out_ << "    kelp_vstring_destroy_internal(h, 0, &text, 0);\n  }\n";
  }
  void address(const Structure &type, const Field &field, const std::string &object,
               std::uint32_t value) override {
    out_ << "  {\n    ip_address address = ip_address_make_ipv4(" << value << "u);\n";
    set(type, field, "set", object, "&address");
    out_ << "  }\n";
  }
  void array(const Structure &type, const Field &field, const std::string &object,
             const std::vector<std::uint32_t> &elements) override {
    if (field.held == Kind::address) {
      for (std::size_t at = 0; at < elements.size(); ++at) {
        out_ << "  {\n    ip_address address = ip_address_make_ipv4(" << elements[at] << "u);\n";
        set(type, field, "set", object, std::to_string(at) + ", &address");
        out_ << "  }\n";
      }
      return;
    }
    out_ << "  {\n    " << (field.held == Kind::u8 ? "std::uint8_t" : "std::uint32_t")
         << " elements[] = {" << joined(elements) << "};\n";
    set(type, field, "set_mem", object, "elements, " + std::to_string(elements.size()));
    out_ << "  }\n";
  }
  void reference(const Structure &, const Field &, const std::string &) override {}
  void structure(const Structure &type, const Field &field, const std::string &object,
                 const std::string &child) override {
    if (field.kind == Kind::arm) {
      out_ << "  auto *" << child << " = " << field.structure->name << "_create(h, 0);\n";
    } else {
      out_ << "  auto *" << child << " = " << operation(type, field, "get") << "(h, 0, " << object
           << ", &err);\n";
    }
  }
  void structure_end(const Structure &type, const Field &field, const std::string &object,
                     const std::string &child) override {
    if (field.kind == Kind::arm) set(type, field, "set", object, child);
  }
};

class FillProtobuf : public Fill {
 public:
  using Fill::Fill;

 private:
  void open(const Structure &type) override {
    out_ << "inline void fill(peer_proto::" << type.name << " &m, bool images) {\n"
         << "  (void)images;\n";
  }
  void number(const Structure &, const Field &field, const std::string &object,
              std::uint32_t value) override {
    out_ << "  " << object << ".set_" << lower(field.name) << "(";
    if (field.kind == Kind::enumeration) {
      out_ << "static_cast<peer_proto::" << field.enumeration->name << ">(" << value << ")";
    } else {
      out_ << value;
    }
    out_ << ");\n";
  }
  void words(const Structure &, const Field &field, const std::string &object,
             const std::string &value) override {
    out_ << "  " << object << ".set_" << lower(field.name) << "(\"" << value << "\");\n";
  }
  void address(const Structure &, const Field &field, const std::string &object,
               std::uint32_t value) override {
    out_ << "  {\n    const unsigned char bytes[] = {" << bytes_of(value) << "};\n    " << object
         << ".set_" << lower(field.name) << "(bytes, 4);\n  }\n";
  }
  void array(const Structure &, const Field &field, const std::string &object,
             const std::vector<std::uint32_t> &elements) override {
    if (field.held == Kind::u8) {
      out_ << "  {\n    const unsigned char bytes[] = {" << joined(elements) << "};\n    " << object
           << ".set_" << lower(field.name) << "(bytes, sizeof bytes);\n  }\n";
      return;
    }
    for (const std::uint32_t element : elements) {
      if (field.held == Kind::address) {
        out_ << "  {\n    const unsigned char bytes[] = {" << bytes_of(element) << "};\n    "
             << object << ".add_" << lower(field.name) << "(bytes, 4);\n  }\n";
      } else {
        out_ << "  " << object << ".add_" << lower(field.name) << "(" << element << "u);\n";
      }
    }
  }
  void reference(const Structure &, const Field &field, const std::string &object) override {
    out_ << "  if (images) " << object << ".set_" << lower(field.name) << "(std::string("
         << oid_size << ", '\\0'));\n";
  }
  void structure(const Structure &, const Field &field, const std::string &object,
                 const std::string &child) override {
    out_ << "  auto &" << child << " = *" << object << ".mutable_" << lower(field.name) << "();\n";
  }
};

class FillFlatbuffers : public Fill {
 public:
  using Fill::Fill;

 private:
  void open(const Structure &type) override {
    out_ << "inline void fill(peer_flat::" << type.name << "T &m) {\n";
  }
  void put(const Field &field, const std::string &object, const std::string &value) {
    out_ << "  " << object << "." << lower(field.name) << " = " << value << ";\n";
  }
  void number(const Structure &, const Field &field, const std::string &object,
              std::uint32_t value) override {
    put(field, object, std::to_string(value));
  }
  void words(const Structure &, const Field &field, const std::string &object,
             const std::string &value) override {
    put(field, object, "\"" + value + "\"");
  }
  void address(const Structure &, const Field &field, const std::string &object,
               std::uint32_t value) override {
    put(field, object, "{" + bytes_of(value) + "}");
  }
  void array(const Structure &, const Field &field, const std::string &object,
             const std::vector<std::uint32_t> &elements) override {
    if (field.held != Kind::address) return put(field, object, "{" + joined(elements) + "}");
    for (const std::uint32_t element : elements) {
      out_ << "  {\n    const unsigned char bytes[] = {" << bytes_of(element) << "};\n    "
           << object << "." << lower(field.name)
           << ".emplace_back(std::begin(bytes), std::end(bytes));\n  }\n";
    }
  }
  void reference(const Structure &, const Field &field, const std::string &object) override {
    out_ << "  " << object << "." << lower(field.name) << ".resize(" << oid_size << ");\n";
  }
  void structure(const Structure &, const Field &field, const std::string &object,
                 const std::string &child) override {
    out_ << "  " << object << "." << lower(field.name)
         << " = std::make_unique<peer_flat::" << field.structure->name << "T>();\n  auto &" << child
         << " = *" << object << "." << lower(field.name) << ";\n";
  }
};

class FillCapnp : public Fill {
 public:
  using Fill::Fill;

 private:
  void open(const Structure &type) override {
    out_ << "inline void fill(peer_capnp::" << camel(type.name, true) << "::Builder m) {\n";
  }
  static std::string set(const Field &field, const std::string &object, const char *verb = "set") {
    return "  " + object + "." + verb + camel(lower(field.name), true) + "(";
  }
  void number(const Structure &, const Field &field, const std::string &object,
              std::uint32_t value) override {
    out_ << set(field, object) << value << ");\n";
  }
  void words(const Structure &, const Field &field, const std::string &object,
             const std::string &value) override {
    out_ << set(field, object) << "\"" << value << "\");\n";
  }
  void data(const Field &field, const std::string &object, const std::string &bytes) {
    out_ << "  {\n    const kj::byte bytes[] = {" << bytes << "};\n  " << set(field, object)
         << "kj::arrayPtr(bytes, sizeof bytes));\n  }\n";
  }
  void address(const Structure &, const Field &field, const std::string &object,
               std::uint32_t value) override {
    data(field, object, bytes_of(value));
  }
  void array(const Structure &, const Field &field, const std::string &object,
             const std::vector<std::uint32_t> &elements) override {
    if (field.held == Kind::u8) return data(field, object, joined(elements));
    out_ << "  {\n    auto list = " << set(field, object, "init").substr(2) << elements.size()
         << ");\n";
    for (std::size_t at = 0; at < elements.size(); ++at) {
      if (field.held == Kind::address) {
        out_ << "    const kj::byte bytes" << at << "[] = {" << bytes_of(elements[at])
             << "};\n    list.set(" << at << ", kj::arrayPtr(bytes" << at << ", 4));\n";
      } else {
        out_ << "    list.set(" << at << ", " << elements[at] << "u);\n";
      }
    }
    out_ << "  }\n";
  }
  void reference(const Structure &, const Field &field, const std::string &object) override {
    out_ << set(field, object, "init") << oid_size << ");\n";
  }
  void structure(const Structure &, const Field &field, const std::string &object,
                 const std::string &child) override {
    out_ << "  auto " << child << " = " << set(field, object, "init").substr(2) << ");\n";
  }
};

// Reads every field of a record, as a program that takes it over would, in the words of one peer:
// numbers by their values, texts by their lengths, addresses and octets by the last byte.
// References are left out, and the arms of a choice that are not selected.
class Sum {
 public:
  Sum(std::ostream &out) : out_(out) {}
  virtual ~Sum() = default;

  void record(const Structure &type) {
    open(type);
    for (const Field *field : type.fields) {
      if (!is_carried(*field) || field->kind == Kind::reference) continue;
      if (field->kind == Kind::arm && field->selector != selected_arm) continue;
      if (is_list(*field)) {
        list(type, *field);
      } else if (is_byte_array(*field)) {
        octets(type, *field);
      } else {
        out_ << "  total += " << value(type, *field) << ";\n";
      }
    }
    close();
  }

 protected:
  virtual void open(const Structure &) = 0;
  virtual void list(const Structure &, const Field &) = 0;
  virtual void octets(const Structure &type, const Field &field) {
    out_ << "  total += " << value(type, field) << ";\n";
  }
  virtual std::string value(const Structure &, const Field &) = 0;
  virtual void close() { out_ << "  return total;\n}\n"; }

  std::ostream &out_;
};

class SumHarbor : public Sum {
 public:
  using Sum::Sum;

 private:
  void open(const Structure &type) override {
    out_ << "inline std::uint64_t sum(kelp_handle *h, " << type.name
         << " *m) {\n  std::uint64_t total = 0;\n  std::uint32_t err = 0;\n";
  }
  static std::string get(const Structure &type, const Field &field, const char *suffix,
                         const std::string &more = "") {
    return operation(type, field, suffix) + "(h, 0, m, " + more + "&err)";
  }
  void list(const Structure &type, const Field &field) override {
    out_ << "  for (std::uint32_t i = 0, n = " << get(type, counter_of(type, field), "get_value")
         << "; i < n; ++i) total += "
         << (field.held == Kind::address ? get(type, field, "get", "i, ") + "->bytes[3]"
                                         : get(type, field, "get_value", "i, "))
         << ";\n";
  }
  void octets(const Structure &type, const Field &field) override {
    out_ << "  {\n    std::uint8_t octets[256];\n    const std::uint32_t n = "
         << get(type, counter_of(type, field), "get_value") << ";\n    "
         << get(type, field, "get_mem", "octets, n, ") << ";\n    total += octets[n - 1];\n  }\n";
  }
  std::string value(const Structure &type, const Field &field) override {
    switch (stored(field)) {
      case Kind::text:
        return get(type, field, "get") + "->length";
      case Kind::address:
        return get(type, field, "get") + "->bytes[3]";
      case Kind::structure:
        return "sum(h, " + get(type, field, "get") + ")";
      default:
        return "static_cast<std::uint64_t>(" + get(type, field, "get_value") + ")";
    }
  }
  void close() override { out_ << "  bench::require(err);\n  return total;\n}\n"; }
};

class SumProtobuf : public Sum {
 public:
  using Sum::Sum;

 private:
  void open(const Structure &type) override {
    out_ << "inline std::uint64_t sum(const peer_proto::" << type.name
         << " &m) {\n  std::uint64_t total = 0;\n";
  }
  static std::string get(const Field &field, const char *suffix = "",
                         const std::string &argument = "") {
    return "m." + lower(field.name) + suffix + "(" + argument + ")";
  }
  void list(const Structure &, const Field &field) override {
    out_ << "  for (int i = 0, n = " << get(field, "_size") << "; i < n; ++i) total += "
         << (field.held == Kind::address
                 ? "static_cast<std::uint8_t>(" + get(field, "", "i") + ".back())"
                 : get(field, "", "i"))
         << ";\n";
  }
  std::string value(const Structure &, const Field &field) override {
    if (is_byte_array(field) || stored(field) == Kind::address) {
      return "static_cast<std::uint8_t>(" + get(field) + ".back())";
    }
    if (stored(field) == Kind::text) return get(field) + ".size()";
    if (stored(field) == Kind::structure) return "sum(" + get(field) + ")";
    return "static_cast<std::uint64_t>(" + get(field) + ")";
  }
};

class SumCapnp : public Sum {
 public:
  using Sum::Sum;

 private:
  void open(const Structure &type) override {
    out_ << "inline std::uint64_t sum(peer_capnp::" << camel(type.name, true)
         << "::Reader m) {\n  std::uint64_t total = 0;\n";
  }
  static std::string get(const Field &field) {
    return "m.get" + camel(lower(field.name), true) + "()";
  }
  void list(const Structure &, const Field &field) override {
    out_ << "  for (auto element : " << get(field)
         << ") total += " << (field.held == Kind::address ? "element.back()" : "element") << ";\n";
  }
  std::string value(const Structure &, const Field &field) override {
    if (is_byte_array(field) || stored(field) == Kind::address) return get(field) + ".back()";
    if (stored(field) == Kind::text) return get(field) + ".size()";
    if (stored(field) == Kind::structure) return "sum(" + get(field) + ")";
    return "static_cast<std::uint64_t>(" + get(field) + ")";
  }
};

}  // namespace

int main(int argc, char **argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: peer_schemas FOLDER\n");
    return 2;
  }
  const std::filesystem::path folder = argv[1];
  std::filesystem::create_directories(folder);
  const auto write = [&](const char *name, const std::function<void(std::ostream &)> &writer) {
    std::ofstream out(folder / name);
    writer(out);
    if (!out.flush()) {
      std::fprintf(stderr, "peer_schemas: cannot write %s\n", (folder / name).c_str());
      std::exit(1);
    }
  };
  write("peers.proto", write_proto);
  write("peers.fbs", write_flatbuffers);
  write("peers.capnp", write_capnp);
  write("peers.yang", write_yang);
  write("fill_peers.inc", [](std::ostream &out) {
    FillHarbor harbor(out);
    FillProtobuf protobuf(out);
    FillFlatbuffers flatbuffers(out);
    FillCapnp capnp(out);
    for (const Structure *type : measured) {
      for (Fill *fill : {static_cast<Fill *>(&harbor), static_cast<Fill *>(&protobuf),
                         static_cast<Fill *>(&flatbuffers), static_cast<Fill *>(&capnp)}) {
        fill->record(*type);
      }
    }
    SumHarbor of_harbor(out);
    SumProtobuf of_protobuf(out);
    SumCapnp of_capnp(out);
    for (const Structure *type : all_measured()) {
      for (Sum *sum : {static_cast<Sum *>(&of_harbor), static_cast<Sum *>(&of_protobuf),
                       static_cast<Sum *>(&of_capnp)}) {
        sum->record(*type);
      }
    }
  });
}
