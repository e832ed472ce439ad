// Several sites in one store, as tenants, as sources or as both: who chooses one sees that site
// alone, and who chooses none sees all, each by its name.
#include <gtest/gtest.h>

#include "replicate_test.hpp"

namespace replication_tests {

namespace {

using tool_tests::ToolProcess;
using Words = std::vector<std::string>;

struct FollowedSite {
  std::string from;  // the store of its sender
  Words chosen;      // by these words
  std::string name;  // in text
  std::string keys;  // in front of each object
};

const FollowedSite sites[] = {
    // In the order of tenants and sources.
    {"other", {"--source", "2"}, "source 2", "\"tenant\":0,\"source\":2,"},
    {"from", {"--tenant", "1"}, "tenant 1", "\"tenant\":1,\"source\":1,"},
    {"other",
     {"--tenant", "7", "--source", "9"},
     "tenant 7, source 9",
     "\"tenant\":7,\"source\":9,"},
};

// Lines of objects as a reader of all sites has them.
std::string named(const std::string &keys, const std::string &lines) {
  std::string text;
  std::size_t start = 0;
  for (std::size_t end = lines.find('\n'); end != lines.npos; end = lines.find('\n', start)) {
    text += "{" + keys + lines.substr(start + 1, end - start);
    start = end + 1;
  }
  return text;
}

class ReplicatedSites : public Replicate {
 protected:
  void SetUp() override {
    expect_done({"load", "frr", sample_, "--store", file("from")});
    expect_done({"load", "frr", other_sample_, "--store", file("other")});
    for (const char *name : {"from", "other"}) {
      const std::string network = name == std::string("from") ? "instances" : "sr";
      expect_done({"load", "capture", places::recordings() + "/" + network + "/all.pcap", "--store",
                   file(name)});
    }
    for (const char *name : {"from", "other"}) {
      start({"--to", url_of(server_.port()), "--name", name, "--store", file(name)});
    }
    for (const FollowedSite &site : sites) {
      Words words = {"--from",    url_of(server_.port()), "--name", site.from, "--store",
                     file("both")};
      words.insert(words.end(), site.chosen.begin(), site.chosen.end());
      start(words);
    }
    for (const FollowedSite &site : sites) ASSERT_TRUE(is_there(site)) << said();
  }
  void start(Words words) {
    words.insert(words.begin(), "replicate");
    processes_.push_back(std::make_unique<ToolProcess>(
        folder_, "process" + std::to_string(processes_.size()), words));
  }
  std::string said() const {
    std::string text;
    for (const auto &process : processes_) text += process->err();
    return text;
  }
  std::string shown(const std::string &store, Words words, const Words &chosen = {}) {
    words.insert(words.end(), {"--store", file(store)});
    words.insert(words.end(), chosen.begin(), chosen.end());
    return run(words).out;
  }
  // The site's rows in the common store are those of its sender.
  bool is_there(const FollowedSite &site) {
    for (int tries = 0; tries < 300; ++tries) {
      if (std::filesystem::exists(file("both")) &&
          shown("both", {"show", "--tree"}, site.chosen) == shown(site.from, {"show", "--tree"})) {
        return true;
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return false;
  }
  std::vector<std::unique_ptr<ToolProcess>> processes_;
};

TEST_F(ReplicatedSites, AreSeenOneByOneOrTogether) {
  for (const char *command : {"neighbors", "interfaces", "areas", "routers", "lsdb", "show"}) {
    SCOPED_TRACE(command);
    std::string all;
    for (const FollowedSite &site : sites) {
      const std::string own = shown(site.from, {command, "--json"});
      EXPECT_NE(own, "");
      EXPECT_EQ(shown("both", {command, "--json"}, site.chosen), own);
      all += named(site.keys, own);
    }
    EXPECT_EQ(shown("both", {command, "--json"}), all);
    const std::string text = shown("both", {command});
    for (const FollowedSite &site : sites) {
      EXPECT_NE(text.find(site.name + ": "), text.npos) << text;
      EXPECT_EQ(shown("both", {command}, site.chosen), shown(site.from, {command}));
    }
  }
  // What would mix them is refused.
  for (const Words &words :
       {Words{"path", "10.0.0.1", "10.0.0.2"}, Words{"routes", "--router", "all"},
        Words{"export", "--image", file("tree")}, Words{"check"}}) {
    Words on_both = words;
    on_both.insert(on_both.end(), {"--store", file("both")});
    expect_wrong_words(on_both, {words[0] + ": --store: found a store of several sites (source 2; "
                                            "tenant 1; tenant 7, source 9), expected --tenant or "
                                            "--source to choose one"});
  }
  expect_wrong_words({"neighbors", "--store", file("both"), "--source", "255"}, {"--source"});
  EXPECT_EQ(run({"store", "check", file("both")}).status, 0);
}

TEST_F(ReplicatedSites, ChangeEachByItself) {
  ToolProcess watch_all(folder_, "watch-all", {"watch", "--json", "--store", file("both")});
  ToolProcess watch_one(folder_, "watch-one",
                        {"watch", "--json", "--store", file("both"), "--tenant", "1"});
  ASSERT_TRUE(says(watch_all, "watching ")) << watch_all.err();
  ASSERT_TRUE(says(watch_one, "watching ")) << watch_one.err();
  expect_done({"load", "frr", other_sample_, "--store", file("from")});
  for (const FollowedSite &site : sites) EXPECT_TRUE(is_there(site)) << said();
  const auto without_time = [](const std::string &line) { return line.substr(line.find(',') + 1); };
  EXPECT_EQ(without_time(watch_all.line(0)),
            "\"tenant\":1,\"source\":1," + without_time(watch_one.line(0)));
  EXPECT_EQ(watch_all.out().find("\"source\":2"), std::string::npos);
  EXPECT_EQ(run({"store", "check", file("both")}).status, 0);
}

// A single one is found without being chosen.
TEST_F(Replicate, ASiteAloneInAStoreIsSeen) {
  expect_done({"load", "frr", sample_, "--store", file("from"), "--source", "4"});
  const std::string one = run({"areas", "--json", "--store", file("from"), "--source", "4"}).out;
  EXPECT_EQ(run({"areas", "--json", "--store", file("from")}).out,
            named("\"tenant\":0,\"source\":4,", one));
  EXPECT_EQ(run({"show", "--store", file("from"), "--tenant", "4"}).status, 1);
}

}  // namespace

}  // namespace replication_tests
