#include "xml_scanner.hpp"

#include <algorithm>

namespace tree_exchange {

namespace {

constexpr std::string_view blanks = " \t\r\n";

}  // namespace

std::optional<std::string_view> XmlEvent::attribute(std::string_view wanted) const {
  for (const auto &[key, value] : attributes) {
    if (key == wanted) return value;
  }
  return std::nullopt;
}

XmlEvent XmlScanner::next() {
  while (true) {
    const std::size_t begin = std::min(text_.find_first_not_of(blanks, at_), text_.size());
    const std::string_view rest = text_.substr(begin);
    if (rest.empty()) return {XmlPiece::end, begin, begin, {}, {}};
    const auto passed_over = [&](std::string_view start, std::string_view end) {
      if (!rest.starts_with(start)) return false;
      at_ = std::min(text_.find(end, begin + start.size()), text_.size() - end.size()) + end.size();
      return true;
    };
    if (passed_over("<?", "?>") || passed_over("<!--", "-->")) continue;
    if (rest[0] == '<' && !rest.starts_with("<![CDATA[")) return tag(begin);
    if (!passed_over("<![CDATA[", "]]>")) at_ = std::min(text_.find('<', begin), text_.size());
    return {XmlPiece::text, begin, at_, {}, {}};
  }
}

XmlEvent XmlScanner::peek() {
  const std::size_t here = at_;
  XmlEvent event = next();
  at_ = here;
  return event;
}

XmlEvent XmlScanner::tag(std::size_t begin) {
  XmlEvent event{XmlPiece::open, begin, begin, {}, {}};
  std::size_t at = begin + 1;
  if (text_.substr(at).starts_with('/')) {
    event.piece = XmlPiece::close;
    ++at;
  }
  const auto word = [&](std::string_view ends) {
    const std::size_t start = at;
    at = std::min(text_.find_first_of(ends, at), text_.size());
    return text_.substr(start, at - start);
  };
  event.name = word(" \t\r\n/>");
  while (at < text_.size() && text_[at] != '>') {
    if (blanks.find(text_[at]) != std::string_view::npos) {
      ++at;
    } else if (text_[at] == '/') {
      event.empty = true;
      ++at;
    } else {
      const std::string_view key = word(" \t\r\n=");
      at = std::min(text_.find_first_of("\"'", at), text_.size() - 1);
      const std::string_view quote = text_.substr(at++, 1);
      event.attributes.emplace_back(key, word(quote));
      ++at;
    }
  }
  event.end = at_ = std::min(at + 1, text_.size());
  return event;
}

std::size_t XmlScanner::skip_element(const XmlEvent &opened) {
  std::size_t end = opened.end;
  for (std::size_t depth = opened.empty ? 0 : 1; depth != 0;) {
    const XmlEvent event = next();
    if (event.piece == XmlPiece::end) break;
    if (event.piece == XmlPiece::open && !event.empty) ++depth;
    if (event.piece == XmlPiece::close) --depth;
    end = event.end;
  }
  return end;
}

XmlLines::XmlLines(std::string_view text) : starts_{0} {
  for (std::size_t at = text.find('\n'); at != text.npos; at = text.find('\n', at + 1)) {
    starts_.push_back(at + 1);
  }
}

LineAndColumn XmlLines::at(std::size_t offset) const {
  const auto next = std::upper_bound(starts_.begin(), starts_.end(), offset);
  return {static_cast<std::size_t>(next - starts_.begin()), offset - *(next - 1) + 1};
}

}  // namespace tree_exchange
