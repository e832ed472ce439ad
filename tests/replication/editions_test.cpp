// Senders of the older, the present and the newer edition on one engine, each followed by followers
// of all three: a follower has its sender's rows as far as it knows their fields.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <regex>
#include <set>
#include <sstream>

#include "replicate_test.hpp"

namespace replication_tests {

namespace {

using tool_tests::Process;
using Words = std::vector<std::string>;
using Lines = std::vector<std::string>;

const std::string editions[] = {"older", "current", "newer"};

Lines lines_of(std::string text) {
  Lines lines;
  // What stands for a value without a name ends no line.
  const std::string nameless = "Enum value out of range";
  for (std::size_t at = text.find(nameless); at != text.npos; at = text.find(nameless, at)) {
    text.insert(at += nameless.size(), "\n");
  }
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

// Where a line of a row's text stands: "  cost@u_int16:7" is the field "cost" of the structure
// whose block it is in, "  header@ospfv2_header: {" begins one.
class Place {
 public:
  // The structure and field of the line; empty for what no field begins.
  std::string next(const std::string &line, std::size_t margin) {
    while (!blocks_.empty() && blocks_.back().first >= margin) blocks_.pop_back();
    const std::size_t end = line.find('@', margin);
    if (end == line.npos) return "";
    std::string field = line.substr(margin, std::min(end, line.find('[', margin)) - margin);
    field = (blocks_.empty() ? "" : blocks_.back().second) + field.substr(field.rfind('.') + 1);
    const std::size_t type_end = line.find(':', end);
    if (line.ends_with(": {")) {
      blocks_.emplace_back(margin, line.substr(end + 1, type_end - end - 1) + ".");
    }
    return field;
  }

 private:
  std::vector<std::pair<std::size_t, std::string>> blocks_;
};

// Members of these came with a later edition, and an earlier one has no name for them.
std::string without_value(const std::string &line) {
  for (const char *type :
       {"@ospf_auth_type:", "@ospf_network_type:", "@ospfv3_lsa_body_flag_options:"}) {
    const std::size_t at = line.find(type);
    if (at != line.npos) return line.substr(0, at + std::strlen(type));
  }
  return line;
}

class ReplicatingEditions : public tool_tests::ProcessTest {
 protected:
  static std::string program(const std::string &edition) {
    return std::string(HARBOR_REPLICATING) + edition;
  }
  std::string asked(const std::string &edition, const Words &words) {
    Words all = {program(edition)};
    all.insert(all.end(), words.begin(), words.end());
    const Said said = tool_tests::run_program(folder_, all);
    EXPECT_EQ(said.status, 0) << edition << ": " << said.err;
    return said.out;
  }
  void start(const std::string &edition, const Words &words) {
    Words all = {program(edition)};
    all.insert(all.end(), words.begin(), words.end());
    processes_.push_back(
        std::make_unique<Process>(folder_, "process" + std::to_string(processes_.size()), all));
  }
  std::string said() const {
    std::string text;
    for (const auto &process : processes_) text += process->err();
    return text;
  }
  // Whether a row is below a reference that the edition does not know. A key may end in the length
  // of a prefix.
  bool is_unknown(const std::string &path, const std::set<std::string> &known) const {
    return std::ranges::any_of(all_fields_, [&](const std::string &name) {
      const std::size_t slash = name.find('/');
      if (slash == name.npos || known.contains(name)) return false;
      const std::regex way("/" + name.substr(0, slash) + "/[^/]*(/[0-9]+)?/" +
                           name.substr(slash + 1) + "/");
      return std::regex_search(path, way);
    });
  }
  // The rows of a store without the lines of fields that an edition does not know, and without the
  // ends of blocks, which an object at a lower variant than its edition's highest lacks.
  std::string rows(const std::string &edition, const std::string &store,
                   const std::set<std::string> &known) {
    std::string text;
    std::size_t skipped = std::string::npos;  // the margin of a field that is left out
    Place place;
    bool is_row_left_out = false;
    for (const std::string &line : lines_of(asked(edition, {"rows", file(store)}))) {
      const std::size_t margin = std::min(line.find_first_not_of(' '), line.size());
      if (line.substr(margin) == "}" || (skipped != line.npos && margin > skipped)) continue;
      skipped = line.npos;
      if (margin == 0 && line.find('/') != line.npos) {
        is_row_left_out = is_unknown(line, known);
      }
      if (is_row_left_out) continue;
      const std::string field = place.next(line, margin);
      if (all_fields_.contains(field) && !known.contains(field)) {
        ++left_out_;
        if (line.ends_with("{")) skipped = margin;
        continue;
      }
      text += without_value(line) + "\n";
    }
    return text;
  }

  Server server_{folder_ / "engine"};
  std::vector<std::unique_ptr<Process>> processes_;
  std::set<std::string> all_fields_;
  std::size_t left_out_ = 0;
};

TEST_F(ReplicatingEditions, FollowEachOtherAsFarAsTheyKnow) {
  std::map<std::string, std::set<std::string>> known;
  for (const std::string &edition : editions) {
    for (const std::string &field : lines_of(asked(edition, {"fields"}))) {
      known[edition].insert(field);
      all_fields_.insert(field);
    }
  }
  EXPECT_LT(known["older"].size(), known["current"].size());
  EXPECT_LT(known["current"].size(), known["newer"].size());
  const std::string url = url_of(server_.port());
  for (const std::string &from : editions) {
    asked(from, {"fill", file("from-" + from), "1"});
    start(from, {"send", file("from-" + from), url, from});
    for (const std::string &to : editions) {
      start(to, {"follow", file(from + "-to-" + to), url, from});
    }
  }
  // The first whole tree, and then one that takes its place.
  for (const char *seed : {"1", "2"}) {
    for (const std::string &from : editions) {
      SCOPED_TRACE(from);
      if (*seed == '2') asked(from, {"fill", file("from-" + from), seed});
      for (const std::string &to : editions) {
        const std::string expected = rows(from, "from-" + from, known[to]);
        EXPECT_GT(expected.size(), 2000u);
        std::string found;
        for (int tries = 0; tries < 200 && found != expected; ++tries) {
          found = rows(to, from + "-to-" + to, known[from]);
          if (found != expected) std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
        EXPECT_EQ(found, expected) << to << said();
      }
    }
  }
  EXPECT_GT(left_out_, 0u);
}

}  // namespace

}  // namespace replication_tests
