#include "mismatch.hpp"

namespace ospf_findings {

using ospf_events::Difference;

namespace {

Severity severity_of(Difference difference) {
  switch (difference) {
    case Difference::authentication_key:
    case Difference::instance:
    case Difference::one_way:
    case Difference::unheard:
      return Severity::warning;
    default:
      return Severity::error;
  }
}

std::string text_of(Difference difference, const MismatchEnd &a, const MismatchEnd &b) {
  switch (difference) {
    case Difference::one_way:
      return a.name + " hears " + b.name + " and is not heard";
    case Difference::unheard:
      return "neither hears the other, though their hellos agree";
    case Difference::router_id:
    case Difference::address:
      return "both have " + a.value;
    default:
      if (a.value == b.value) return "both have " + a.value + ", and neither takes the other's";
      return a.value + " at " + a.name + ", " + b.value + " at " + b.name;
  }
}

}  // namespace

Kind kind_of(Difference difference) {
  switch (difference) {
    case Difference::router_id:
      return Kind::duplicate_router_id;
    case Difference::address:
      return Kind::duplicate_address;
    case Difference::one_way:
    case Difference::unheard:
      return Kind::hello_one_way;
    default:
      return Kind::interface_mismatch;
  }
}

Finding mismatch(Difference difference, const MismatchEnd &a, const MismatchEnd &b) {
  Finding found;
  found.severity = severity_of(difference);
  found.kind = kind_of(difference);
  found.routers = {a.router, b.router};
  found.where = a.name + " - " + b.name;
  found.field = ospf_events::name_of(difference);
  found.what = text_of(difference, a, b);
  return found;
}

}  // namespace ospf_findings
