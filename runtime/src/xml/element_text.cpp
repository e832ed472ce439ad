// Comments and CDATA sections split a text into several nodes; they are put together again here.
#include "xml/element_text.hpp"

namespace kelp {

const char *whole_text(pugi::xml_node element) {
  const pugi::xml_node first = element.first_child();
  if (!first) return "";
  return first.type() == pugi::node_pcdata && !first.next_sibling() ? first.value() : nullptr;
}

ElementText::ElementText(pugi::xml_node element) {
  if (const char *whole = whole_text(element); whole != nullptr) {
    view_ = whole;
    return;
  }
  bool several = false;
  for (const pugi::xml_node node : element.children()) {
    if (node.type() != pugi::node_pcdata && node.type() != pugi::node_cdata) continue;
    if (several) {
      joined_ += node.value();
      view_ = joined_;
    } else if (view_.empty()) {
      view_ = node.value();
    } else {
      several = true;
      joined_ = std::string(view_) + node.value();
      view_ = joined_;
    }
  }
}

}  // namespace kelp
