// Two printers over one reading. A part that is damaged does not keep the others from being shown.
#include "views/inspection.hpp"

#include <array>
#include <iomanip>
#include <library_sections/halyard.hpp>
#include <library_sections/messages.hpp>
#include <library_sections/type_names.hpp>
#include <memory>
#include <nlohmann/json.hpp>

#include "traces/library_file.hpp"

namespace tool {

using namespace ospf_tables;

namespace {

using library_sections::hex;

// Names of types by MD5, as far as they are known.
using Names = std::map<std::string, std::string>;

// How many messages of a table have each signature.
using Counts = std::array<std::size_t, library_sections::signatures.size()>;

Counts count(const library_sections::MessageTable &table) {
  Counts counts{};
  for (const library_sections::Message &message : table.messages) ++counts[message.signature()];
  return counts;
}

// Two products of the same facts. Each function prints one part of a file.
class Printer {
 public:
  explicit Printer(std::ostream &out) : out_(out) {}
  virtual ~Printer() = default;
  virtual void halyard(const library_sections::Halyard &halyard, const Names &names) = 0;
  virtual void messages(const library_sections::MessageStore &store, bool each) = 0;

 protected:
  std::ostream &out_;
};

class TextPrinter : public Printer {
 public:
  using Printer::Printer;

  void halyard(const library_sections::Halyard &halyard, const Names &names) override {
    const library_sections::BuildRecord &build = halyard.build;
    out_ << "Module " << library_sections::escaped(build.module) << "\n\nBuild record\n"
         << "  built by  " << library_sections::escaped(build.built_by) << '\n'
         << "  on host   " << library_sections::escaped(build.on_host) << '\n'
         << "  pid       " << library_sections::escaped(build.pid) << '\n'
         << "  at        " << library_sections::escaped(build.at) << '\n'
         << "  comment   " << library_sections::escaped(build.comment) << "\n\n";
    const library_sections::Manifest &manifest = halyard.manifest;
    out_ << "Type manifest of " << library_sections::escaped(manifest.module) << ": "
         << manifest.lines.size() << " types\n"
         << "  KIND  VARIANTS   SIZE  MD5                               SECOND MD5                 "
            "       NAME\n";
    for (const library_sections::ManifestLine &line : manifest.lines) {
      out_ << "  " << line.kind << "  " << std::setw(8) << line.highest_variant + 1 << "  "
           << std::setw(5) << line.size << "  " << line.md5 << "  " << line.second_md5 << "  "
           << (names.contains(line.md5) ? library_sections::escaped(names.at(line.md5)) : "-")
           << '\n';
    }
    out_ << '\n';
  }

  void messages(const library_sections::MessageStore &store, bool each) override {
    std::size_t sum = 0;
    for (const auto &table : store.tables) sum += table.messages.size();
    out_ << "Trace messages: " << sum << " in " << store.tables.size() << " tables, "
         << store.text_bytes << " bytes of text, " << store.compressed_bytes << " as "
         << store.compression << "\n"
         << "  SOURCE  MESSAGES  IDENTITY\n";
    for (const auto &table : store.tables) {
      out_ << "  " << std::setw(6) << table.source << "  " << std::setw(8) << table.messages.size()
           << "  " << hex(table.identity) << '\n';
    }
    out_ << "\n  SIGNATURE  EMITTER  CONVERSIONS";
    for (const auto &table : store.tables) {
      out_ << std::setw(12) << "SOURCE " + std::to_string(table.source);
    }
    out_ << '\n';
    std::vector<Counts> counts;
    for (const auto &table : store.tables) counts.push_back(count(table));
    for (std::size_t i = 0; i < library_sections::signatures.size(); ++i) {
      const library_sections::Signature &signature = library_sections::signatures[i];
      out_ << "  " << std::setw(9) << i << "  __XLf_" << std::left << std::setw(3)
           << signature.digits << ' ' << std::setw(9)
           << (signature.conversions.empty() ? "none" : signature.conversions) << std::right
           << "  ";
      for (const Counts &one : counts) out_ << std::setw(12) << one[i];
      out_ << '\n';
    }
    out_ << '\n';
    if (each) list(store);
  }

 private:
  void list(const library_sections::MessageStore &store) {
    out_ << "  SOURCE  INDEX  SIGNATURE  TEXT\n";
    for (const auto &table : store.tables) {
      for (std::size_t i = 0; i < table.messages.size(); ++i) {
        const library_sections::Message &message = table.messages[i];
        out_ << "  " << std::setw(6) << table.source << "  " << std::setw(5) << i << "  "
             << std::setw(9) << message.signature() << "  "
             << library_sections::escaped(message.text) << '\n';
      }
    }
    out_ << '\n';
  }
};

class JsonPrinter : public Printer {
 public:
  using Printer::Printer;

  void halyard(const library_sections::Halyard &halyard, const Names &names) override {
    const library_sections::BuildRecord &build = halyard.build;
    put({{"what", "build"},
         {"module", build.module},
         {"built_by", build.built_by},
         {"on_host", build.on_host},
         {"pid", build.pid},
         {"at", build.at},
         {"comment", build.comment}});
    for (const library_sections::ManifestLine &line : halyard.manifest.lines) {
      nlohmann::json type{{"what", "type"},
                          {"md5", line.md5},
                          {"second_md5", line.second_md5},
                          {"kind", line.kind},
                          {"highest_variant", line.highest_variant},
                          {"size", line.size}};
      if (names.contains(line.md5)) type["name"] = names.at(line.md5);
      put(type);
    }
  }

  void messages(const library_sections::MessageStore &store, bool each) override {
    for (const auto &table : store.tables) {
      nlohmann::json signatures;
      const Counts counts = count(table);
      for (std::size_t i = 0; i < counts.size(); ++i) {
        signatures[std::string(library_sections::signatures[i].digits)] = counts[i];
      }
      put({{"what", "message_table"},
           {"source", table.source},
           {"identity", hex(table.identity)},
           {"messages", table.messages.size()},
           {"signatures", signatures}});
    }
    for (const auto &table : store.tables) {
      for (std::size_t i = 0; each && i < table.messages.size(); ++i) {
        const library_sections::Message &message = table.messages[i];
        put({{"what", "message"},
             {"source", table.source},
             {"index", i},
             {"signature", library_sections::signatures[message.signature()].digits},
             {"text", message.text}});
      }
    }
  }

 private:
  void put(const nlohmann::json &object) {
    // Texts of a damaged file need not be UTF-8.
    out_ << object.dump(-1, ' ', true, nlohmann::json::error_handler_t::replace) << '\n';
  }
};

}  // namespace

int inspect(const InspectOptions &options, std::ostream &out, std::ostream &complaints) {
  const LibraryFile library(options.shared_object);
  const auto file = library.read([&] { return library_sections::ElfFile(library.bytes()); });
  std::unique_ptr<Printer> printer;
  if (options.json) {
    printer = std::make_unique<JsonPrinter>(out);
  } else {
    printer = std::make_unique<TextPrinter>(out);
  }
  int status = 0;
  const auto part = [&](auto read_and_print) {
    try {
      library.read(read_and_print);
    } catch (const InputError &error) {
      complaints << "ospf-harbor: " << error.what() << '\n';
      status = 1;
    }
  };
  Names names;
  part([&] { names = library_sections::read_type_names(file); });
  part([&] { printer->halyard(library_sections::read_halyard(file), names); });
  part([&] { printer->messages(library_sections::read_messages(file), options.messages); });
  return status;
}

}  // namespace tool
