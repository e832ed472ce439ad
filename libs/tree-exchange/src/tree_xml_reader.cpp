// The document is looked over as a whole first: what is behind that is well-formed. Then its tags
// are walked once, and the text of each record is checked and read as a document of its own, so
// that the work grows with the length of the document and not with its square.
#include <ospf_harbor_check.h>

#include <initializer_list>
#include <memory>

#include "ospf_tables/input_error.hpp"
#include "tree_exchange/tree_builder.hpp"
#include "tree_exchange/tree_xml.hpp"
#include "xml_frame.hpp"
#include "xml_scanner.hpp"

namespace tree_exchange {

using namespace ospf_tables;

namespace {

constexpr std::size_t largest_record = 64u << 20;

using Document = std::unique_ptr<kelp_xml_document, decltype(&kelp_xml_free)>;

Document parsed(const std::string &source, std::string_view text) {
  char message[256] = "";
  Document document(kelp_xml_parse(text.data(), text.size(), message, sizeof message),
                    &kelp_xml_free);
  if (document == nullptr) {
    throw InputError(source, std::string(message) + ", expected a well-formed document");
  }
  return document;
}

std::string tag_text(std::string_view name) { return "<" + std::string(name) + ">"; }

class Reader {
 public:
  Reader(Session &session, const std::string &source, std::string_view text)
      : session_(session),
        source_(source),
        text_(text),
        lines_(text),
        scanner_(text),
        builder_(session) {}

  std::uint64_t read() {
    const XmlEvent root = opened(xml::tree);
    attributes(root,
               {{"xmlns", xml::name_space}, {"version", xml::version}, {"module", xml::module}});
    if (root.empty) fail(root, "an empty element", tag_text(xml::table) + " of the root");
    table(opened(xml::table));
    closed(xml::tree);
    builder_.give();
    return builder_.rows();
  }

 private:
  struct Attribute {
    std::string_view name;
    std::string_view value;  // that it must have; empty for any
  };

  [[noreturn]] void fail(LineAndColumn place, const std::string &found,
                         const std::string &expected) const {
    throw InputError(source_,
                     (path_.empty() ? "" : path_ + ", ") + "line " + std::to_string(place.line) +
                         ", column " + std::to_string(place.column),
                     found, expected);
  }
  [[noreturn]] void fail(const XmlEvent &event, const std::string &found,
                         const std::string &expected) const {
    fail(lines_.at(event.begin), found, expected);
  }
  [[noreturn]] void fail_unexpected(const XmlEvent &event, const std::string &expected) const {
    std::string found = "the end";
    if (event.piece == XmlPiece::open) found = tag_text(event.name);
    if (event.piece == XmlPiece::close) found = "</" + std::string(event.name) + ">";
    if (event.piece == XmlPiece::text) found = "text";
    fail(event, found, expected);
  }

  XmlEvent opened(std::string_view name) {
    XmlEvent event = scanner_.next();
    if (event.piece != XmlPiece::open || event.name != name) fail_unexpected(event, tag_text(name));
    return event;
  }
  void closed(std::string_view name) {
    const XmlEvent event = scanner_.next();
    if (event.piece != XmlPiece::close) {
      fail_unexpected(event, "</" + std::string(name) + ">");
    }
  }
  bool next_opens(std::string_view name) {
    const XmlEvent event = scanner_.peek();
    return event.piece == XmlPiece::open && event.name == name;
  }

  // Each of them must be there and no other.
  void attributes(const XmlEvent &event, std::initializer_list<Attribute> wanted) const {
    for (const auto &[key, value] : event.attributes) {
      bool known = false;
      for (const Attribute &attribute : wanted) known = known || attribute.name == key;
      if (!known) fail(event, "the attribute " + std::string(key), "none of that name");
    }
    for (const Attribute &attribute : wanted) {
      const auto value = event.attribute(attribute.name);
      const std::string name(attribute.name);
      if (!value) fail(event, "no attribute " + name, name + " of " + tag_text(event.name));
      if (!attribute.value.empty() && *value != attribute.value) {
        fail(event, name + " \"" + std::string(*value) + "\"", std::string(attribute.value));
      }
    }
  }

  void table(const XmlEvent &opening) {
    const bool is_root = builder_.open_rule() == nullptr;
    if (is_root) {
      attributes(opening, {{"name", ""}});
    } else {
      attributes(opening, {{"name", ""}, {"reference", ""}});
    }
    const std::string name(*opening.attribute("name"));
    const std::string reference(opening.attribute("reference").value_or(""));
    const TableRule *rule = rule_named(name);
    if (rule == nullptr) fail(opening, "the table \"" + name + "\"", "a table of the model");
    placed(opening, [&] { builder_.open_table(reference, rule); });
    const std::size_t above = path_.size();
    if (!opening.empty) {
      while (next_opens(xml::row)) row(scanner_.next(), *rule, above);
      path_.resize(above);
      closed(xml::table);
    }
    builder_.close_table();
  }

  void row(const XmlEvent &opening, const TableRule &rule, std::size_t above) {
    path_.resize(above);
    path_ += (path_.empty() ? "" : "/") + std::string(rule.kind) + "[" +
             std::to_string(builder_.rows_of_table() + 1) + "]";
    attributes(opening, {});
    if (opening.empty) fail(opening, "an empty row", tag_text(rule.name));
    record(opened(rule.name), rule);
    while (next_opens(xml::table)) table(scanner_.next());
    closed(xml::row);
  }

  void record(const XmlEvent &opening, const TableRule &rule) {
    const std::size_t end = scanner_.skip_element(opening);
    const std::string_view text = text_.substr(opening.begin, end - opening.begin);
    ospf_harbor_check_result result;
    if (ospf_harbor_check_xml(OSPF_HARBOR_CHECK_RECORD, rule.name, text.data(), text.size(),
                              largest_record, &result) != OSPF_HARBOR_FAULT_NONE) {
      // Lines and columns of the record are counted on from where it stands.
      LineAndColumn place = lines_.at(opening.begin);
      if (result.line > 1) {
        place = {place.line + result.line - 1, result.column};
      } else if (result.line == 1) {
        place.column += result.column - 1;
      }
      path_ += std::string(", ") + result.path;
      fail(place, result.found, result.expected);
    }
    const Document document = parsed(source_, text);
    void *record = rule.from_xml(session_, document.get());
    placed(opening, [&] { builder_.add_row(record); });
  }

  template <typename Act>
  void placed(const XmlEvent &event, Act act) {
    try {
      act();
    } catch (const Misplaced &misplaced) {
      fail(event, misplaced.found, misplaced.expected);
    }
  }

  Session &session_;
  const std::string &source_;
  std::string_view text_;
  XmlLines lines_;
  XmlScanner scanner_;
  TreeBuilder builder_;
  std::string path_;  // of the row at hand, such as "ospf[1]/instance[2]"
};

}  // namespace

std::uint64_t read_tree_xml(Session &session, const std::string &source, std::string_view text) {
  parsed(source, text);
  return Reader(session, source, text).read();
}

}  // namespace tree_exchange
