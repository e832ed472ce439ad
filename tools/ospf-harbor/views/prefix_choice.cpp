#include "views/prefix_choice.hpp"

#include "usage_error.hpp"

namespace tool {

using namespace ospf_routes;

PrefixChoice PrefixChoice::parse(const std::string &text) {
  PrefixChoice choice{Match::exact, text};
  if (text.empty()) return {Match::all, ""};
  for (const char sign : {'+', '@'}) {
    const Match match = sign == '+' ? Match::longer : Match::covering;
    if (choice.text.ends_with(sign)) {
      choice.text.pop_back();
      choice.match = match;
    } else if (choice.text.starts_with(sign)) {
      choice.text.erase(0, 1);
      choice.match = match;
    }
  }
  if (!parse_prefix(choice.text, Family::ipv4) && !parse_prefix(choice.text, Family::ipv6)) {
    throw UsageError("--prefix", "", "\"" + text + "\"",
                     "a prefix such as 10.0.0.0/8 or 2001:db8::/32, with + behind it for those "
                     "within it too, with @ for those that cover it");
  }
  return choice;
}

bool PrefixChoice::meets(const Prefix &prefix, Family family) const {
  if (match == Match::all) return true;
  const auto wanted = parse_prefix(text, family);
  if (!wanted) return false;
  switch (match) {
    case Match::longer:
      return covers(*wanted, prefix);
    case Match::covering:
      return covers(prefix, *wanted);
    default:
      return prefix == *wanted;
  }
}

bool PrefixChoice::is_near(const Prefix &prefix, Family family) const {
  const auto wanted = parse_prefix(text, family);
  return wanted && (covers(*wanted, prefix) || covers(prefix, *wanted));
}

}  // namespace tool
