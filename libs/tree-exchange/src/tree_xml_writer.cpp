#include "ospf_tables/tree.hpp"
#include "tree_exchange/table_rules.hpp"
#include "tree_exchange/tree_xml.hpp"
#include "xml_frame.hpp"

namespace tree_exchange {

using namespace ospf_tables;

namespace {

class DocumentWriter {
 public:
  DocumentWriter(Session &session, const TextSink &sink) : session_(session), sink_(sink) {}

  std::uint64_t write() {
    using std::string;
    sink_("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
    sink_(string("<") + xml::tree + " xmlns=\"" + xml::name_space + "\" version=\"" + xml::version +
          "\" module=\"" + xml::module + "\">\n");
    table(root_rule(), root_table(session_, false), "", 1);
    sink_(string("</") + xml::tree + ">\n");
    return rows_;
  }

 private:
  void line(std::size_t depth, const std::string &text) {
    sink_(std::string(2 * depth, ' ') + text + "\n");
  }

  void table(const TableRule &rule, void *table_, const std::string &reference, std::size_t depth) {
    line(depth, std::string("<") + xml::table + " name=\"" + rule.name + "\"" +
                    (reference.empty() ? "" : " reference=\"" + reference + "\"") + ">");
    if (table_ != nullptr) {
      rule.for_each(session_, table_, [&](void *record) { row(rule, record, depth + 1); });
    }
    line(depth, std::string("</") + xml::table + ">");
  }

  void row(const TableRule &rule, void *record, std::size_t depth) {
    line(depth, std::string("<") + xml::row + ">");
    line(depth + 1, rule.xml(session_, record));
    ++rows_;
    for (const ReferenceRule &reference : rule.references) {
      if (void *below = reference.below(session_, record); below != nullptr) {
        table(*reference.child, below, reference.name, depth + 1);
      }
    }
    line(depth, std::string("</") + xml::row + ">");
  }

  Session &session_;
  const TextSink &sink_;
  std::uint64_t rows_ = 0;
};

}  // namespace

std::uint64_t write_tree_xml(Session &session, const TextSink &sink) {
  return DocumentWriter(session, sink).write();
}

}  // namespace tree_exchange
