// `events`: what happened in a network while it was captured, in the order of time.
#include <algorithm>
#include <cstdio>
#include <memory>
#include <set>

#include "commands/source_choice.hpp"
#include "ospf_tables/row_keys.hpp"
#include "sources/load_capture.hpp"
#include "sources/time_point.hpp"
#include "views/event_list.hpp"
#include "views/text_forms.hpp"

namespace tool {

using ospf_events::Event;

namespace {

struct EventsOptions {
  SourceChoice source;
  std::string interface;
  unsigned seconds = 0;
  std::vector<std::string> kinds;
  std::string router;
  std::string since;
  bool v2 = false;
  bool v3 = false;
  bool json = false;
};

std::string all_kinds() {
  std::string list;
  for (std::size_t at = 0; at < ospf_events::event_kind_count; ++at) {
    list += (list.empty() ? "" : ", ") +
            std::string(ospf_events::name_of(static_cast<ospf_events::EventKind>(at)));
  }
  return list;
}

class EventFilter {
 public:
  explicit EventFilter(const EventsOptions &options) : options_(options) {
    for (const std::string &text : options.kinds) add_kind(text);
    if (options.router.empty()) return;
    router_ = ospf_tables::parse_dotted(options.router);
    if (!router_) {
      throw UsageError("--router", "", "\"" + options.router + "\"",
                       "a router ID such as 10.0.0.1");
    }
  }

  bool meets(const Event &event) const {
    if (!kinds_.empty() && !kinds_.contains(event.kind)) return false;
    if (options_.v2 != options_.v3 && event.version != (options_.v2 ? 2 : 3)) return false;
    return !router_ || std::ranges::find(event.routers, *router_) != event.routers.end();
  }
  std::optional<std::uint32_t> router() const { return router_; }

 private:
  // A whole name, or what several begin with, as lsa and neighbor.
  void add_kind(const std::string &text) {
    bool any = false;
    for (std::size_t at = 0; at < ospf_events::event_kind_count; ++at) {
      const auto kind = static_cast<ospf_events::EventKind>(at);
      const std::string name = ospf_events::name_of(kind);
      if (name != text && !name.starts_with(text + "_")) continue;
      kinds_.insert(kind);
      any = true;
    }
    if (!any) throw UsageError("--kind", "", "\"" + text + "\"", "one of " + all_kinds());
  }

  const EventsOptions &options_;
  std::set<ospf_events::EventKind> kinds_;
  std::optional<std::uint32_t> router_;
};

class EventListing {
 public:
  // `names` may come later, before what is told.
  EventListing(const EventsOptions &options, const Heard &heard, const RouterNames &names)
      : options_(options),
        heard_(heard),
        names_(names),
        filter_(options),
        printer_(heard.captures, names, stdout) {}

  void add(const Event &event) {
    if (!filter_.meets(event)) return;
    if (options_.json) {
      std::printf("%s\n", json_line(event, heard_.captures, names_).c_str());
    } else {
      printer_.print(event);
    }
  }

 private:
  const EventsOptions &options_;
  const Heard &heard_;
  const RouterNames &names_;
  EventFilter filter_;
  EventPrinter printer_;
};

// What is heard now is told now.
int listen(ospf_tables::Session &session, const EventsOptions &options, Heard &heard,
           EventListing &listing) {
  heard.at_once = [&](const Event &event) {
    listing.add(event);
    std::fflush(stdout);
  };
  return load_capture(session, {{}, options.interface, options.seconds, "", &heard}, nullptr);
}

// Who asked for a router that nothing is told of may have meant another.
void tell_nothing(std::optional<std::uint32_t> router, const std::vector<Event> &events) {
  std::set<std::uint32_t> routers;
  for (const Event &event : events) routers.insert(event.routers.begin(), event.routers.end());
  const std::string nearest = router ? nearest_routers(*router, routers) : "";
  std::fprintf(stderr, "ospf-harbor: events: nothing of that happened%s%s\n",
               nearest.empty() ? "" : "; the nearest routers are ", nearest.c_str());
}

int list_events(ospf_tables::Session &session, const EventsOptions &options) {
  Heard heard;
  RouterNames names;
  EventListing listing(options, heard, names);
  if (!options.interface.empty()) return listen(session, options, heard, listing);
  if (options.source.sources.empty()) {
    throw UsageError("events", "--from", "nothing", "captures to look into, or -i");
  }
  const int status = options.source.load(session, "events", &heard);
  if (heard.timeline == nullptr) {
    throw ospf_tables::InputError("events", "", "sources that are no captures",
                                  "captures, which alone tell what happened");
  }
  // Some is known only later: that a timer has ended, that a storm is over.
  std::ranges::stable_sort(heard.events, {}, &Event::time);
  const auto since = options.since.empty() || !heard.first
                         ? std::optional<ospf_decode::Time>()
                         : parse_time(options.since, *heard.first);
  session.reading([&] { names = router_names(session); });
  for (const Event &event : heard.events) {
    if (!since || event.time >= *since) listing.add(event);
  }
  const EventFilter filter(options);
  const bool is_nothing = std::ranges::none_of(heard.events, [&](const Event &event) {
    return (!since || event.time >= *since) && filter.meets(event);
  });
  if (!is_nothing) return status;
  tell_nothing(filter.router(), heard.events);
  return 1;
}

Run set_up_events(CLI::App &app) {
  const auto options = std::make_shared<EventsOptions>();
  options->source.add_to(app);
  CLI::Option *interface =
      app.add_option("-i", options->interface, "Listen on an interface instead, without sending");
  interface->excludes("--from");
  app.add_option("--seconds", options->seconds, "How long to listen; until a signal without it")
      ->needs(interface);
  app.add_option("--since", options->since, "Only what happened at this time or later")
      ->excludes(interface);
  app.add_option("--kind", options->kinds,
                 "Only these: " + all_kinds() + "; or what several begin with, such as lsa")
      ->delimiter(',');
  app.add_option("--router", options->router, "Only what this router has a part in");
  CLI::Option *v2 = app.add_flag("--v2", options->v2, "Only OSPFv2");
  app.add_flag("--v3", options->v3, "Only OSPFv3")->excludes(v2);
  app.add_flag("--json", options->json, "One JSON object a line");
  return [options](ospf_tables::Session *session) { return list_events(*session, *options); };
}

constexpr char events_description[] =
    R"(Tells in the order of time when neighbours came up and went down and why,
what they differ in, which routers were elected, which LSAs were new,
changed, refreshed, flushed or aged out, storms of flushes, restarts,
sequence numbers that began anew, LSAs that were sent again, wrong
checksums. A line has the time (UTC), the number of the packet, or - where a
timer ended, the version of OSPF and the kind of event. Of several captures
the number of the capture stands before that of the packet. With -i all is
told when it happens, that a timer ends too.

A line of --json has the keys time, kind, file, packet, version, instance,
area, routers (the one that it is of first), router_names, where, why, what
and lsa, with scope, type, type_name, lsa_id, adv_router and seq_num.
)";

constexpr char events_example[] = R"($ ospf-harbor events --kind neighbor_down --v2 --from site.pcap
2026-11-22
05:27:08.131      - v2 neighbor_down    10.245.0.14@10.98.14.2 - 10.245.0.1@10.98.14.1: dead_timer: no hello for 8 s
05:27:09.877   1243 v2 neighbor_down    10.245.0.1@10.98.13.1 - 10.245.0.13@10.98.13.2: one_way: 10.245.0.1 no longer hears 10.245.0.13, nor anybody there

$ ospf-harbor routes --router 10.245.0.1 --at 05:27:05 --from site.pcap
)";

}  // namespace

extern const Command events_command;
const Command events_command{
    "events",           "Tell what happened in the network while it was captured",
    Needs::session,     set_up_events,
    Stands::everywhere, false,
    events_description, events_example};

}  // namespace tool
