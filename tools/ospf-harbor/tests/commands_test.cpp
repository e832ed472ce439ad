// The registry: every command on the command line and in the shell, with its help, a right and a
// wrong line, and what is made of the list besides. A command without a row here fails.
#include "commands/commands.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <sstream>

#include "commands/help_texts.hpp"
#include "support/processes.hpp"

namespace {

using Words = std::vector<std::string>;

// The names of all commands of the command line, or of a group.
std::vector<std::string> names(CLI::App &app, const std::string &before = "") {
  std::vector<std::string> all;
  for (CLI::App *each : app.get_subcommands([](const CLI::App *) { return true; })) {
    if (each->get_name().empty()) continue;
    const std::string name = before + each->get_name();
    const auto below = names(*each, name + " ");
    if (below.empty()) all.push_back(name);
    all.insert(all.end(), below.begin(), below.end());
  }
  return all;
}

std::vector<std::string> all_names() {
  std::vector<std::string> all;
  tool::with_parser([&](CLI::App &program) { all = names(program); });
  return all;
}

struct Lines {
  std::string right;
  std::string wrong;
  std::string complaint;
  int status = 0;  // of the right one
  bool in_the_shell = true;
};

class Commands : public tool_tests::ProcessTest {
 protected:
  // SAMPLE is a folder of a router's answers, TREE its tree, FILE a new one, TRACE a trace, STORE
  // a store.
  std::string filled(std::string line) const {
    const std::map<std::string, std::string> places = {{"SAMPLE", sample_},
                                                       {"TREE", file("tree")},
                                                       {"FILE", file("new")},
                                                       {"TRACE", file("trace")},
                                                       {"STORE", file("store")},
                                                       {"LIBRARY", places::library()},
                                                       {"CAPTURE", places::sample() + "/all.pcap"},
                                                       {"HERE", "unix:" + file("socket")}};
    for (const auto &[name, place] : places) {
      for (std::size_t at; (at = line.find(name)) != line.npos;) {
        line.replace(at, name.size(), place);
      }
    }
    return line;
  }
  static Words words_of(const std::string &line) {
    std::istringstream in(line);
    Words words;
    for (std::string word; in >> word;) words.push_back(word);
    return words;
  }
  // As it stands between single quotes.
  static std::string shell_quoted(const std::string &text) {
    std::string result;
    for (const char c : text) result += c == '\'' ? "'\\''" : std::string(1, c);
    return result;
  }
  Said in_shell(const std::string &lines) {
    put("lines", lines + "\n");
    return run({"shell"}, file("lines"));
  }

  const std::map<std::string, Lines> lines_ = {
      {"load frr", {"load frr SAMPLE --show", "load frr SAMPLE --shaw", "--shaw"}},
      {"load capture",
       {"load capture CAPTURE --path area-lsas", "load capture a -i b", "from [FILE,-i]"}},
      {"show", {"show area --from SAMPLE", "show --jsun --from SAMPLE", "--jsun"}},
      {"neighbors",
       {"neighbors --v2 --from CAPTURE", "neighbors --area x --from CAPTURE", "\"x\""}},
      {"interfaces",
       {"interfaces --json --from CAPTURE", "interfaces --router 1 --from CAPTURE", "\"1\""}},
      {"areas", {"areas --from CAPTURE", "areas --v2 --v3 --from CAPTURE", "excludes"}},
      {"routers", {"routers --v3 --from CAPTURE", "routers --instance 256 --from CAPTURE", "256"}},
      {"routes",
       {"routes --router 10.255.0.1 --v2 --from CAPTURE",
        "routes --router 10.255.0.1 --cost 10.255.0.1>10.255.0.2=0 --from CAPTURE",
        "\"0\" is no cost"}},
      {"path",
       {"path 10.255.0.1 10.255.0.6 --from CAPTURE", "path 10.255.0.1 --from CAPTURE",
        "TO is required"}},
      {"failures",
       {"failures --from CAPTURE", "failures --all --most 3 --from CAPTURE", "excludes"}},
      {"check", {"check --v2 --from CAPTURE", "check --fail-on x --from CAPTURE", "found \"x\""}},
      {"events",
       {"events --kind neighbor --from CAPTURE", "events --kind x --from CAPTURE", "found \"x\""}},
      {"diff", {"diff CAPTURE CAPTURE", "diff CAPTURE", "two sources, or one capture"}},
      {"lsdb", {"lsdb --v2 --from CAPTURE", "lsdb --area x --from CAPTURE", "found \"x\""}},
      {"graph", {"graph --dot --from CAPTURE", "graph --from CAPTURE", "--dot,--svg"}},
      {"export", {"export --text FILE --from SAMPLE", "export --from SAMPLE", "--image"}},
      {"import", {"import --image TREE --path area", "import --show", "--image,--xml"}},
      {"send",
       {"send --to HERE --from SAMPLE", "send --to tcp:192.0.2.1:1 --from SAMPLE", "loopback", 1}},
      {"receive", {"receive --at HERE --timeout 0.01", "receive --timeout 0", "--timeout", 1}},
      {"store info", {"store info STORE", "store info", "FILE is required"}},
      {"store check", {"store check STORE", "store check STORE --all", "--all"}},
      // A second time there is less to give back.
      {"store compact", {"store compact STORE", "store compact STORE --all", "--all", 0, false}},
      {"collect",
       {"collect -i lo --seconds 1 --store STORE", "collect --seconds 1 --store STORE",
        "-i is required", 1, false}},
      {"watch",
       {"watch area --seconds 0.1 --store STORE", "watch rows --store STORE", "found \"rows\"", 0,
        false}},
      {"replicate",
       {"replicate --name a --from nats://127.0.0.1:9 --seconds 0.1 --store STORE",
        "replicate --name a.b --from nats://127.0.0.1:9 --store STORE", "found \"a.b\"", 0, false}},
      {"dump", {"dump --annotate TREE", "dump TREE", "--annotate is required"}},
      {"trace", {"trace TRACE", "trace TRACE --level loud", "found \"loud\""}},
      {"inspect", {"inspect LIBRARY", "inspect", "LIBRARY is required"}},
      {"model",
       {"model ospf_area", "model ospf_aera",
        "found \"ospf_aera\", expected a type or a table; the nearest are ospf_area, "}},
      {"shell", {"shell", "shell now", "not expected", 0, false}},
      {"help", {"help load frr", "help lode", "unknown command \"lode\""}},
      {"man", {"man lsdb", "man lode", "unknown command \"lode\"", 0, false}},
      {"completion", {"completion bash", "completion csh", "csh", 0, false}},
  };
};

TEST_F(Commands, HaveEachALineHere) {
  std::vector<std::string> here;
  for (const auto &[name, lines] : lines_) here.push_back(name);
  std::vector<std::string> there = all_names();
  std::sort(there.begin(), there.end());
  EXPECT_EQ(there, here);
}

TEST_F(Commands, DoAndSayTheSameOnTheCommandLineAndInTheShell) {
  expect_done({"export", "--image", file("tree"), "--from", sample_});
  expect_done({"--trace-file", file("trace"), "load", "frr", sample_});
  expect_done({"load", "frr", sample_, "--store", file("store")});
  for (const auto &[name, lines] : lines_) {
    SCOPED_TRACE(name);
    const std::string right = filled(lines.right);
    const Said said = run(words_of(right));
    EXPECT_EQ(said.status, lines.status) << said.err;
    const std::string wrong = filled(lines.wrong);
    const Said refused = run(words_of(wrong));
    EXPECT_EQ(refused.status, 2) << wrong;
    EXPECT_TRUE(refused.err.starts_with("ospf-harbor: ")) << refused.err;
    EXPECT_EQ(std::count(refused.err.begin(), refused.err.end(), '\n'), 1) << refused.err;
    EXPECT_NE(refused.err.find(lines.complaint), std::string::npos) << refused.err;
    EXPECT_EQ(refused.out, "");
    if (!lines.in_the_shell) continue;
    const Said line = in_shell(right);
    EXPECT_EQ(line.status, lines.status) << line.err;
    EXPECT_EQ(line.out, said.out);
    EXPECT_EQ(line.err, said.err);
    const Said wrong_line = in_shell(wrong);
    EXPECT_EQ(wrong_line.status, 2);
    EXPECT_EQ(wrong_line.err, refused.err);
  }
}

// How many examples a help has; each is taken by the command line, and no line is too long.
std::size_t examples_taken(const std::string &help) {
  std::size_t count = 0;
  std::istringstream in(help);
  for (std::string line; std::getline(in, line);) {
    EXPECT_LE(line.size(), 80u) << line;
    const std::string prompt = "  ospf-harbor ";
    if (!line.starts_with(prompt)) continue;
    std::istringstream typed(line.substr(prompt.size(), line.find_first_of("<>") - prompt.size()));
    Words words;
    for (std::string word; typed >> word;) words.push_back(word);
    EXPECT_NO_THROW(tool::check_words(words)) << line;
    ++count;
  }
  return count;
}

// 1 says that something was found, so what cannot be read has 2.
TEST_F(Commands, WhoseStatusIsAnAnswerHaveTwoForTrouble) {
  const Said said = run({"diff", "no.pcap", "no.pcap"});
  EXPECT_EQ(said.status, 2);
  EXPECT_EQ(said.err, "ospf-harbor: cannot open no.pcap: No such file or directory\n");
  EXPECT_EQ(run({"lsdb", "--from", "no.pcap"}).status, 1);
  EXPECT_NE(run({"man", "diff"}).out.find(".B 1\nThey differ.\n"), std::string::npos);
  EXPECT_NE(run({"man", "check"}).out.find(".B 1\nSuch a thing was found.\n"), std::string::npos);
  EXPECT_NE(run({"check", "--help"}).out.find("\n  2  a source cannot be read, or only in part"),
            std::string::npos);
  EXPECT_NE(run({"man", "lsdb"}).out.find(".B 1\nSomething is wrong with the data"),
            std::string::npos);
}

TEST_F(Commands, HaveEachTheirHelp) {
  for (const std::string &name : all_names()) {
    SCOPED_TRACE(name);
    Words words = words_of(name);
    words.push_back("--help");
    const Said asked = run(words);
    EXPECT_EQ(asked.status, 0);
    EXPECT_NE(asked.out.find("Usage: ospf-harbor " + name + " [OPTIONS]"), std::string::npos)
        << asked.out;
    EXPECT_NE(asked.out.find("\nExit status:\n  0  "), std::string::npos) << asked.out;
    const bool is_in_the_shell_alone = name == "exit" || name == "quit";
    EXPECT_EQ(examples_taken(asked.out) == 0, is_in_the_shell_alone) << asked.out;
    Words named = words_of(name);
    named.insert(named.begin(), "help");
    EXPECT_EQ(run(named).out, asked.out);
    EXPECT_EQ(in_shell("help " + name).out, asked.out);
    if (lines_.at(name).in_the_shell) {
      EXPECT_EQ(in_shell(name + " --help").out, asked.out);
    }
  }
}

TEST_F(Commands, OfTheProgramItself) {
  EXPECT_TRUE(run({"--version"}).out.starts_with("ospf-harbor 1."));
  const std::string help = run({"--help"}).out;
  EXPECT_TRUE(run({"help"}).out.starts_with(help.substr(0, help.find("\n\nExit status:"))));
  expect_wrong_words({}, {"a command is needed"});
  expect_wrong_words({"lode"}, {"unknown command \"lode\"; there are load, collect, show, "});
  expect_wrong_words({"load", "fry"}, {"unknown command \"load fry\"; there are frr, capture"});
  expect_wrong_words({"--store", file("s"), "lode"}, {"unknown command \"lode\""});
  expect_wrong_words({"show", "area"}, {"show: --from: found nothing"});
  // Options of the program may stand behind a command.
  expect_done({"load", "frr", sample_, "--trace-file", file("trace")});
  EXPECT_GT(content_of(file("trace")).size(), 0u);
}

TEST_F(Commands, OfTheShellEndItAndKeepItsDatabase) {
  const std::string load = "load frr '" + sample_ + "'\n";
  EXPECT_EQ(in_shell(load + "quit\nlode").status, 0);
  EXPECT_EQ(in_shell(load + "exit\nlode").status, 0);
  EXPECT_NE(in_shell("help quit").out.find("End the shell"), std::string::npos);
  EXPECT_EQ(in_shell(load + "# lode\n\n  \nshow area/0.0.0.0").status, 0);
  EXPECT_EQ(in_shell("show").status, 1);
  EXPECT_EQ(in_shell("show\nlode\nhelp").status, 2);
  const Said open = in_shell("show 'area");
  EXPECT_EQ(open.status, 2);
  EXPECT_EQ(open.err, "ospf-harbor: line: found no second ', expected each quote twice\n");
  std::filesystem::create_symlink(sample_, file("a b"));
  EXPECT_EQ(in_shell("load frr '" + file("a b") + "'\nload frr " + file("a\\ b")).status, 0);
}

TEST_F(Commands, AreCompletedByBash) {
  put("words", run({"completion", "bash"}).out);
  const auto completed = [&](const std::string &line) {
    put("script", "source " + file("words") + "\nCOMP_WORDS=(" + line +
                      ")\nCOMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n_ospf_harbor\n"
                      "echo \"${COMPREPLY[@]}\"\n");
    const tool_tests::Said said = tool_tests::run_program(folder_, {"/bin/bash", file("script")});
    EXPECT_EQ(said.status, 0) << said.err;
    return said.out;
  };
  EXPECT_EQ(completed("ospf-harbor lo"), "load\n");
  EXPECT_EQ(completed("ospf-harbor load ''").find("frr capture --help --"), 0u);
  EXPECT_EQ(completed("ospf-harbor load frr --sto"), "--store\n");
  EXPECT_EQ(completed("ospf-harbor load capture -i"), "-i\n");
  EXPECT_EQ(completed("ospf-harbor --trace-file x lsdb --ad"), "--adv-router\n");
  EXPECT_EQ(completed("ospf-harbor export --im"), "--image\n");
  EXPECT_EQ(completed("ospf-harbor load frr " + file("wo")), file("words") + "\n");
}

// Each shell's script names each command with its sentence, and each of its options: what the
// scripts make of them is tried with the shells themselves, where packages are.
TEST_F(Commands, AreDescribedToZshAndFish) {
  const std::string zsh = run({"completion", "zsh"}).out;
  const std::string fish = run({"completion", "fish"}).out;
  EXPECT_EQ(zsh.find("#compdef ospf-harbor\n"), 0u);
  tool::with_parser([&](CLI::App &program) {
    for (CLI::App *command : tool::commands_of(program)) {
      const std::string name = command->get_name();
      const std::string sentence = shell_quoted(command->get_description());
      EXPECT_NE(zsh.find("'" + name + ":" + sentence + "'"), std::string::npos) << name;
      EXPECT_NE(fish.find(" -a " + name + " -d '" + sentence + "'\n"), std::string::npos) << name;
      for (const CLI::Option *option : tool::options_of(*command)) {
        for (const std::string &word : option->get_lnames()) {
          EXPECT_NE(zsh.find("'--" + word + ":"), std::string::npos) << name << word;
          EXPECT_NE(fish.find("__ospf_harbor_at '" + name + "'\" "), std::string::npos) << name;
          EXPECT_NE(fish.find(" -l " + word + " "), std::string::npos) << name << word;
        }
      }
    }
  });
}

TEST_F(Commands, HaveAManPageEachInAFolder) {
  std::filesystem::create_directory(file("pages"));
  EXPECT_EQ(run({"man", "--folder", file("pages")}).status, 0);
  EXPECT_EQ(content_of(file("pages") + "/ospf-harbor.1"), run({"man"}).out);
  EXPECT_EQ(content_of(file("pages") + "/ospf-harbor-load-frr.1"), run({"man", "load", "frr"}).out);
  const Said missing = run({"man", "--folder", file("none")});
  EXPECT_EQ(missing.status, 1);
  EXPECT_EQ(missing.err, "ospf-harbor: cannot write " + file("none") + "/ospf-harbor.1\n");
  EXPECT_EQ(run({"man", "--folder", file("pages"), "lsdb"}).status, 2);
}

TEST_F(Commands, HaveManPagesThatGroffTakes) {
  std::vector<std::string> pages = all_names();
  pages.insert(pages.begin(), "");
  for (const std::string &page : pages) {
    put("page", run(words_of("man " + page)).out);
    const tool_tests::Said said = tool_tests::run_program(
        folder_, {"/usr/bin/groff", "-man", "-Tutf8", "-ww", "-P-cbou", file("page")});
    EXPECT_EQ(said.status, 0);
    EXPECT_EQ(said.err, "");
    for (const char *part : {"NAME", "SYNOPSIS", "EXIT STATUS"}) {
      EXPECT_NE(said.out.find(part), std::string::npos) << page;
    }
    if (!page.empty()) {
      std::istringstream examples(tool::help_text(page).examples);
      for (std::string line; std::getline(examples, line);) {
        EXPECT_NE(said.out.find("$ ospf-harbor " + line + "\n"), std::string::npos) << line;
      }
      continue;
    }
    for (const std::string &name : all_names()) {
      if (lines_.at(name).in_the_shell || name == "shell") {
        EXPECT_NE(said.out.find("ospf-harbor " + name + "\n"), std::string::npos) << name;
      }
    }
  }
}

}  // namespace
