// Every command that calculates, on every kind of source of one network: what must be equal is.
#include <gtest/gtest.h>

#include <iterator>
#include <map>
#include <regex>

#include "recording_test.hpp"

namespace {

class KindsOfSource : public tool_tests::RecordingTest {
 protected:
  // The capture's own tree in every form that it can have.
  std::map<std::string, std::vector<std::string>> forms_of(const std::string &capture) {
    const Said exported =
        ask("export --image " + file("net.tree") + " --xml " + file("net.xml"), capture);
    EXPECT_EQ(exported.status, 0) << exported.err;
    expect_done({"load", "capture", capture, "--store", file("net.store")});
    return {{"tree stream", {"--from", file("net.tree")}},
            {"XML", {"--from", file("net.xml")}},
            {"store", {"--store", file("net.store")}}};
  }

  Said say(const std::string &line, const std::vector<std::string> &source) {
    std::istringstream in(line);
    std::vector<std::string> words{std::istream_iterator<std::string>(in), {}};
    words.insert(words.end(), source.begin(), source.end());
    return run(words);
  }
};

// Only packets tell what time ages are as of.
std::string without_times_of_ages(const std::string &text) {
  return std::regex_replace(text, std::regex("\"age_as\":(null|\"[^\"]*\"),"), "");
}

TEST_F(KindsOfSource, OfOneNetworkSayTheSame) {
  const std::string capture = capture_of("nssa");
  const auto forms = forms_of(capture);
  for (const std::string version : {"--v2", "--v3"}) {
    for (const std::string line :
         {"routes --router all --json", "routes --router all --json --without-router 10.251.0.4",
          "path 10.251.0.6 10.251.0.5 --json", "failures --all --json", "graph --dot",
          "check --json --least notice", "check --json --without-router 10.251.0.4",
          "lsdb --json"}) {
      const std::string whole = line + " " + version;
      const Said heard = say(whole, {"--from", capture});
      EXPECT_NE(heard.out, "") << whole << heard.err;
      for (const auto &[form, source] : forms) {
        const Said said = say(whole, source);
        EXPECT_EQ(without_times_of_ages(said.out), without_times_of_ages(heard.out)) << whole << " of a " << form;
        EXPECT_EQ(said.status, heard.status) << whole << " of a " << form;
      }
    }
  }
}

TEST_F(KindsOfSource, DifferInNothingOfOneNetwork) {
  const std::string capture = capture_of("nssa");
  for (const auto &[form, source] : forms_of(capture)) {
    if (form == "store") continue;  // which no word of diff names
    const Said said =
        run({"diff", capture, source.back(), "--every-field", "--router", "10.251.0.5"});
    EXPECT_EQ(said.status, 0) << form << ": " << said.out << said.err;
    EXPECT_EQ(said.out, "");
  }
}

// Answers are asked one after the other, and tell some LSAs less exactly: what follows from them is
// the same where the network stood still.
TEST_F(KindsOfSource, AnswersOfTheRoutersCallForTheSameRoutesAsTheirPackets) {
  for (const char *name : {"campus", "nssa", "bird-frr"}) {
    const std::string line = "routes --router all --v2 --json";
    const Said heard = ask(line, capture_of(name));
    const Said told = ask(line, recording(name) + "/routers");
    EXPECT_EQ(told.out, heard.out) << name;
  }
}

TEST_F(KindsOfSource, ThatTellOfNoTimesAreRefusedByEvents) {
  for (const auto &[form, source] : forms_of(capture_of("refresh"))) {
    const Said said = say("events", source);
    EXPECT_NE(said.status, 0) << form;
    EXPECT_NE(said.err.find("captures"), std::string::npos) << form << ": " << said.err;
  }
}

}  // namespace
