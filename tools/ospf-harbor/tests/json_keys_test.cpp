// What the man page of each command says of its --json against the keys that it prints.
#include <gtest/gtest.h>

#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <sstream>

#include "recording_test.hpp"

namespace {

using nlohmann::ordered_json;
using Words = std::set<std::string>;

class JsonKeys : public tool_tests::RecordingTest {
 protected:
  // From "A line of --json" up to the next section, as a reader sees it.
  std::string told(const std::string &command) {
    std::string page = run({"man", command}).out;
    page = std::regex_replace(page, std::regex("\\\\-"), "-");
    const std::size_t from = page.find("A line of --json");
    if (from == page.npos) return "";
    return page.substr(from, page.find("\n.SH", from) - from);
  }

  Words words_of(const std::string &text, const char *pattern) {
    const std::regex each(pattern);
    Words words;
    for (auto at = std::sregex_iterator(text.begin(), text.end(), each);
         at != std::sregex_iterator(); ++at) {
      words.insert((*at)[1]);
    }
    return words;
  }
};

// Keys at every depth, and words that are values. A field of an LSA, which lsdb has the keys of, is
// no further looked into.
void add_keys(const ordered_json &of, Words &keys, Words &values) {
  if (of.is_string()) values.insert(of.get<std::string>());
  if (of.is_array()) {
    for (const ordered_json &each : of) add_keys(each, keys, values);
  }
  if (!of.is_object()) return;
  for (const auto &[key, value] : of.items()) {
    keys.insert(key);
    if (key == "body" || (of.contains("field") && (key == "before" || key == "after"))) continue;
    add_keys(value, keys, values);
  }
}

TEST_F(JsonKeys, AreThoseOfTheManPages) {
  const std::string virtual_link = " --from " + capture_of("virtual");
  const std::string what_if = " --router all --json --without 10.252.0.2--10.252.0.3";
  const std::string forged = capture_of("forged");
  const std::string transit = capture_of("transit");
  const std::map<std::string, std::vector<std::string>> shown = {
      {"routes",
       {"routes --router all --json" + virtual_link,
        "routes" + what_if + " --loads" + virtual_link}},
      {"path", {"path 10.252.0.1 10.252.0.6 --json" + virtual_link}},
      {"failures", {"failures --json" + virtual_link}},
      {"check", {"check --json --from " + capture_of("mismatch"), "check --json --from " + forged}},
      {"events", {"events --json --from " + forged}},
      {"diff", {"diff --json --router 10.254.0.1 " + transit + " --at 1795359763 --at 1795359772"}},
      {"neighbors", {"neighbors --json --from " + transit}},
      {"interfaces", {"interfaces --json --from " + transit}},
      {"areas", {"areas --json --from " + transit}},
      {"routers", {"routers --json --from " + transit}},
  };
  for (const auto &[command, asked] : shown) {
    const std::string page = told(command);
    ASSERT_NE(page, "") << command;
    Words keys;
    Words values;
    for (const std::string &line : asked) {
      std::istringstream in(line);
      const Said said = run({std::istream_iterator<std::string>(in), {}});
      ASSERT_NE(said.out, "") << line << ": " << said.err;
      for (const ordered_json &each : lines(said.out)) add_keys(each, keys, values);
    }
    const std::string more = page.find("routes --json") == page.npos ? "" : told("routes");
    const Words named = words_of(page + more, "([a-z0-9_]+)");
    for (const std::string &key : keys) {
      EXPECT_TRUE(named.contains(key)) << command << " prints " << key << ", which its page lacks";
    }
    // What stands in a list, outside of what parentheses say of one, and what has a key's form.
    const std::string lists = std::regex_replace(page, std::regex("\\([^)]*\\)"), "");
    Words promised = words_of(page, "([a-z0-9]+_[a-z0-9_]+)");
    promised.merge(
        words_of(lists, "(?:,|\\band)\\s+([a-z0-9_]+)\\s*(?=,|\\.|;|\\sand\\b|\\sor\\b)"));
    EXPECT_GE(promised.size(), 3u) << command;
    for (const std::string &word : promised) {
      EXPECT_TRUE(keys.contains(word) || values.contains(word))
          << command << " does not print " << word << ", which its page has";
    }
  }
}

}  // namespace
