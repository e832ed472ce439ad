// A sender and follower of one edition: the libraries' own sources, built on that edition.
//
//   replicating fill STORE SEED              puts a random tree in place of what the store has
//   replicating send|follow STORE URL SITE   replicates until it is ended
//   replicating rows STORE                   prints each row with its path
//   replicating fields                       prints "structure.field" for each field, and for each
//                                            reference the kinds of rows that it leads from and to
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <set>
#include <string>
#include <thread>

#include "model/lists.hpp"
#include "ospf_replication/follower.hpp"
#include "ospf_replication/jetstream.hpp"
#include "ospf_replication/sender.hpp"
#include "ospf_tables/tree.hpp"
#include "support/random_tree.hpp"

namespace {

using namespace ospf_replication;
using ospf_tables::Session;
constexpr std::chrono::milliseconds turn_time{50};

template <typename Turn>
void go_on(Turn turn) {
  for (;;) {
    try {
      turn();
    } catch (const CarrierFailure &failure) {
      std::fprintf(stderr, "%s\n", failure.what());
      std::this_thread::sleep_for(turn_time);
    }
  }
}

void replicate(const std::string &direction, Session &session, const std::string &url,
               const std::string &site) {
  EngineOptions options;
  options.url = url;
  Engine engine(options);
  const auto tell = [](const std::string &what) { std::fprintf(stderr, "%s\n", what.c_str()); };
  if (direction == "send") {
    const auto outlet = make_outlet(engine, site, "a program of this edition");
    Sender sender(session, *outlet, site);
    go_on([&] {
      sender.turn();
      kelp_feed_wait(session.handle(), nullptr, turn_time.count(), nullptr);
    });
  }
  const auto inlet = make_inlet(engine, site);
  Follower follower(session, *inlet, site, tell);
  go_on([&] { follower.turn(turn_time); });
}

void fill(Session &session, std::uint32_t seed) {
  session.changing([&] {
    ospf_tables::clear_tree(session);
    tree_exchange_tests::make_random_tree(session, {.seed = seed, .mixed_variants = true});
  });
}

void print_fields() {
  std::set<std::string> names;
  for (const harbor::model::Structure *type : harbor::model::structures) {
    for (const harbor::model::Field *field : type->fields) {
      names.insert(std::string(type->name) + "." + std::string(field->name));
    }
  }
  for (const harbor::model::Table *table : harbor::model::all_tables) {
    const auto *rule = tree_exchange::rule_named("tbl_" + std::string(table->name));
    if (rule == nullptr) continue;
    for (const auto &reference : rule->references) {
      names.insert(std::string(rule->kind) + "/" + reference.child->kind);
    }
  }
  for (const std::string &name : names) std::puts(name.c_str());
}

}  // namespace

int main(int argc, char **argv) {
  const std::string verb = argc > 1 ? argv[1] : "";
  if (verb == "fields") {
    print_fields();
    return 0;
  }
  if (argc < 3) return 2;
  try {
    Session session(argv[2], Session::Missing::is_made);
    if (verb == "rows") {
      session.reading([&] { std::fputs(tree_exchange_tests::text_of(session).c_str(), stdout); });
    } else if (verb == "fill" && argc == 4) {
      fill(session, static_cast<std::uint32_t>(std::atoi(argv[3])));
    } else if (argc == 5) {
      replicate(verb, session, argv[3], argv[4]);
    } else {
      return 2;
    }
  } catch (const std::exception &failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
  }
  return 0;
}
