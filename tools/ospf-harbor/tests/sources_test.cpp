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
        EXPECT_EQ(without_times_of_ages(said.out), without_times_of_ages(heard.out))
            << whole << " of a " << form;
        EXPECT_EQ(said.status, heard.status) << whole << " of a " << form;
      }
    }
  }
}

TEST_F(KindsOfSource, AreTakenPackedOrFromStandardInputOrWithoutTheirOption) {
  const std::string capture = capture_of("nssa");
  forms_of(capture);
  const auto in_shell = [&](const std::string &line) {
    return tool_tests::run_program(folder_, {"/bin/sh", "-c", line});
  };
  for (const std::string &source : {capture, file("net.tree"), file("net.xml")}) {
    const std::vector<std::string> words = {"areas", "--json", "--v2"};
    const auto with = [&](const std::string &last) {
      std::vector<std::string> all = words;
      all.push_back(last);
      return all;
    };
    const Said named = say("areas --json --v2", {"--from", source});
    EXPECT_EQ(lines(named.out).size(), 3u) << named.err;
    const std::string packed = file("packed.gz");
    ASSERT_EQ(in_shell("gzip -c " + source + " > " + packed).status, 0);
    const std::string piped =
        "cat " + source + " | " + places::tool() + " areas --json --v2 --from -";
    const std::pair<const char *, Said> ways[] = {{"without its option", run(with(source))},
                                                  {"standard input", run(with("-"), source)},
                                                  {"a pipe", in_shell(piped)},
                                                  {"packed", run(with(packed))},
                                                  {"packed input", run(with("-"), packed)}};
    for (const auto &[way, said] : ways) {
      EXPECT_EQ(said.out, named.out) << source << ": " << way << said.err;
      EXPECT_EQ(said.status, 0) << way;
    }
  }
}

TEST_F(KindsOfSource, KeepTheirNamesWhereTheyArePacked) {
  const std::string capture = capture_of("refresh");
  const std::string packed = file("site.pcap.gz");
  ASSERT_EQ(
      tool_tests::run_program(folder_, {"/bin/sh", "-c", "gzip -c " + capture + " > " + packed})
          .status,
      0);
  EXPECT_EQ(lines(run({"events", "--json", packed}).out).at(0)["file"], packed);
  EXPECT_EQ(lines(run({"events", "--json", "-"}, capture).out).at(0)["file"], "-");
  // A folder's captures may be packed.
  EXPECT_EQ(run({"events", "--json", folder_.string()}).out, run({"events", "--json", packed}).out);
  const std::string octets = content_of(packed);
  put("cut.pcap.gz", octets.substr(0, octets.size() / 2));
  expect_refused({"areas", file("cut.pcap.gz")}, {"cut.pcap.gz", "ends inside its packing"});
  put("text.gz", "hello");
  expect_refused({"areas", file("text.gz")}, {"text.gz", "a file of no known kind"});
  expect_refused({"areas", "none.pcap"}, {"cannot open none.pcap"});
  expect_refused({"areas", "-"}, {"-: found a file of no known kind"});
}

TEST_F(KindsOfSource, StandBehindWhatACommandTakesBesides) {
  const std::string capture = capture_of("campus");
  EXPECT_EQ(run({"show", capture}).out, ask("show", capture).out);
  EXPECT_EQ(run({"show", "area/0.0.0.1", capture}).out, ask("show area/0.0.0.1", capture).out);
  EXPECT_EQ(run({"path", "10.255.0.1", "10.255.0.6", "--v2", capture}).out,
            ask("path 10.255.0.1 10.255.0.6 --v2", capture).out);
  EXPECT_EQ(run({"graph", "--dot", "--v2", capture}).out, ask("graph --dot --v2", capture).out);
  EXPECT_NE(run({"man", "areas"}).out.find("\\-\\-from VALUE"), std::string::npos);
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
    // Routers tell their names too.
    EXPECT_EQ(std::regex_replace(told.out, std::regex("\"router_name\":(null|\"[^\"]*\"),"), ""),
              std::regex_replace(heard.out, std::regex("\"router_name\":null,"), ""))
        << name;
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
