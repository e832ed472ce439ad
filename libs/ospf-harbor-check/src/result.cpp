#include "result.hpp"

namespace ospf_harbor_check {

namespace {

void keep(ospf_harbor_check_result &result, const Finding &finding) {
  result.fault = finding.fault;
  TextBuffer(result.path).put(finding.path);
  TextBuffer(result.piece).put(finding.piece);
  TextBuffer(result.found).put(finding.found);
  TextBuffer(result.expected).put(finding.expected);
}

// "<where>: <path> <piece>: found <found>, expected <expected>"
void finish(TextBuffer text, const ospf_harbor_check_result &result) {
  if (result.path[0] != '\0') text.put(text.size() == 0 ? "" : ": ").put(result.path);
  if (result.piece[0] != '\0') text.put(" ").put(result.piece);
  text.put(": found ").put(result.found).put(", expected ").put(result.expected);
}

}  // namespace

void begin_result(ospf_harbor_check_result &result, std::string_view name) {
  result = {};
  TextBuffer(result.name).put(name);
}

void say(ospf_harbor_check_result &result, std::size_t offset, const Finding &finding) {
  keep(result, finding);
  result.offset = offset;
  finish(TextBuffer(result.text).put("offset 0x").number(offset, 16), result);
}

void say_in_document(ospf_harbor_check_result &result, const Finding &finding) {
  keep(result, finding);
  TextBuffer text(result.text);
  if (result.line != 0) {
    text.put("line ").number(result.line).put(", column ").number(result.column);
  }
  finish(text, result);
}

void say_unknown(ospf_harbor_check_result &result, std::uint32_t kind) {
  FixedText<sizeof result.found> found;
  found.put("\"").put(result.name).put("\"");
  const bool is_object = kind == OSPF_HARBOR_CHECK_OBJECT;
  keep(result, {OSPF_HARBOR_FAULT_NAME, "", "", found.view(),
                is_object ? "the name of a structure, an enumeration or a flag set"
                          : "the name of a table, such as tbl_ospf_area"});
  finish(TextBuffer(result.text).put("name"), result);
}

}  // namespace ospf_harbor_check
