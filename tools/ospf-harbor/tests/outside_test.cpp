// What stands outside the tool: output that takes nothing, texts that would speak to a terminal,
// files that are none, links, and files left behind.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include "ospf_tables/input_error.hpp"
#include "support/processes.hpp"

namespace {

class Outside : public tool_tests::ProcessTest {};

TEST_F(Outside, OutputThatTakesNothingIsAnErrorOfEveryCommand) {
  expect_done({"export", "--image", file("tree"), "--from", sample_});
  expect_done({"--trace-file", file("trace"), "load", "frr", sample_});
  const std::string capture = places::sample() + "/all.pcap";
  const std::vector<std::vector<std::string>> commands = {
      {"load", "frr", sample_, "--show"},
      {"load", "capture", capture},
      {"show", "--from", sample_},
      {"show", "--json", "--from", sample_},
      {"lsdb", "--from", capture},
      {"graph", "--dot", "--from", capture},
      {"export", "--text", "/dev/full", "--from", sample_},
      {"import", "--image", file("tree"), "--show"},
      {"dump", "--annotate", file("tree")},
      {"trace", file("trace"), "--level", "debug"},
      {"inspect", places::library()},
      {"help"},
      {"--help"},
      {"--version"},
      {"man"},
      {"completion", "bash"}};
  for (const auto &words : commands) {
    std::string line = places::tool();
    for (const std::string &word : words) line += " '" + word + "'";
    const tool_tests::Said said =
        tool_tests::run_program(folder_, {"/bin/sh", "-c", line + " >/dev/full"});
    EXPECT_EQ(said.status, 1) << line;
    EXPECT_TRUE(said.err.find("cannot write to standard output: ") != std::string::npos ||
                said.err.find("cannot write /dev/full: No space") != std::string::npos)
        << line << said.err;
  }
  put("lines", "load frr " + sample_ + "\nshow\n");
  const tool_tests::Said shell = tool_tests::run_program(
      folder_, {"/bin/sh", "-c", places::tool() + " shell <" + file("lines") + " >/dev/full"});
  EXPECT_EQ(shell.status, 1);
}

TEST(Escaping, LeavesSignsAndShowsWhatATerminalWouldObey) {
  using ospf_tables::in_one_line;
  EXPECT_EQ(in_one_line("core-1 \xc3\xa9 \xe4\xb8\xad \xf0\x9f\x90\x99"),
            "core-1 \xc3\xa9 \xe4\xb8\xad \xf0\x9f\x90\x99");
  EXPECT_EQ(in_one_line("a\x1b[2J\x7f\n"), "a\\x1b[2J\\x7f\\x0a");
  EXPECT_EQ(in_one_line("\xc2\x9b"
                        "31m"),
            "\\xc2\\x9b31m");
  EXPECT_EQ(in_one_line("\xe2\x80\xae"
                        "abc"),
            "\\xe2\\x80\\xaeabc");
  EXPECT_EQ(in_one_line("\xe2\x81\xa6"
                        "abc"),
            "\\xe2\\x81\\xa6abc");
  EXPECT_EQ(in_one_line("\xff\xc3"), "\\xff\\xc3");
  EXPECT_EQ(in_one_line("\xe0\x80\x9b"), "\\xe0\\x80\\x9b");
}

TEST_F(Outside, NamesThatSpeakToATerminalAreShownAsOctets) {
  const std::string evil =
      "\xc2\x9b"
      "31m\xe2\x80\xae";
  const std::string shown = "\\xc2\\x9b31m\\xe2\\x80\\xae";
  std::filesystem::copy(sample_, file("router"));
  for (const auto &entry : std::filesystem::directory_iterator(file("router"))) {
    std::string text = content_of(entry.path());
    for (std::size_t at = 0; (at = text.find("\"core\"", at)) != text.npos; ++at) {
      text.replace(at + 1, 4, evil);
    }
    std::filesystem::permissions(entry.path(), std::filesystem::perms::owner_all);
    std::ofstream(entry.path()) << text;
  }
  expect_done({"export", "--image", file("tree"), "--xml", file("xml"), "--from", file("router")});
  for (const auto &words : std::vector<std::vector<std::string>>{
           {"show", "--from", file("router")},
           {"show", "--from", file("tree")},
           {"show", "--from", file("xml")},
           {"show", "--json", "--from", file("tree")},
           {"dump", "--annotate", file("tree")},
           {"show", evil, "--from", file("tree")},
           {"show", "interface/" + evil + "x", "--from", file("tree")},
           {"load", "frr", file("") + evil},
           {"load", "capture", file("") + evil},
           {"import", "--image", file("") + evil},
           {"inspect", file("") + evil},
           {"trace", file("") + evil},
           {evil}}) {
    const Said said = run(words);
    for (const std::string &text : {said.out, said.err}) {
      EXPECT_EQ(text.find("\xc2\x9b"), std::string::npos) << words[0];
      EXPECT_EQ(text.find("\xe2\x80\xae"), std::string::npos) << words[0];
    }
    const bool json = std::find(words.begin(), words.end(), "--json") != words.end();
    EXPECT_NE((said.out + said.err).find(json ? "\\u009b31m\\u202e" : shown), std::string::npos)
        << words[0] << said.err;
  }
}

TEST_F(Outside, WhatIsNoLibraryIsNotReadWhole) {
  for (const char *command : {"inspect", "trace"}) {
    std::vector<std::string> words{command, "/dev/zero"};
    if (words[0] == "trace") words = {"trace", file("trace"), "--library", "/dev/zero"};
    put("trace", "");
    expect_refused(words, {"/dev/zero", "magic of an ELF file"});
  }
}

// A file of a megabyte whose sections all have one long name.
TEST_F(Outside, SectionsThatShareALongNameCostNoMoreThanTheFile) {
  const std::size_t sections = 8000;
  const std::size_t name = 400'000;
  std::string bytes(64 + sections * 64 + name + 1, 'n');
  std::fill(bytes.begin(), bytes.begin() + 64 + sections * 64, '\0');
  bytes.back() = '\0';
  const auto number = [&](std::size_t at, std::uint64_t value, int size) {
    for (int i = 0; i < size; ++i) bytes[at + i] = static_cast<char>(value >> (8 * i));
  };
  bytes.replace(0, 7,
                "\x7f"
                "ELF\x02\x01\x01");
  number(40, 64, 8);  // the section table
  number(58, 64, 2);  // size of an entry
  number(60, sections, 2);
  number(62, 1, 2);  // the section of names
  number(64 + 64 + 4, 3, 4);
  number(64 + 64 + 24, 64 + sections * 64, 8);
  number(64 + 64 + 32, name + 1, 8);
  put("wide.so", bytes);
  // AddressSanitizer's own memory needs more addresses than that, so its limit is on what is used.
#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define LIMIT "ASAN_OPTIONS=hard_rss_limit_mb=600 "
#endif
#endif
#ifndef LIMIT
#define LIMIT "ulimit -v 600000; exec "
#endif
  const tool_tests::Said said = tool_tests::run_program(
      folder_, {"/bin/sh", "-c", LIMIT + places::tool() + " inspect " + file("wide.so")});
  EXPECT_EQ(said.status, 1);
  EXPECT_NE(said.err.find("expected one such section"), std::string::npos) << said.err;
  EXPECT_EQ(said.err.find("bad_alloc"), std::string::npos) << said.err;
}

TEST_F(Outside, DumpRefusesXmlBeforeItPrintsAnyOfIt) {
  expect_done({"export", "--xml", file("xml"), "--from", sample_});
  const Said said = run({"dump", "--annotate", file("xml")});
  EXPECT_EQ(said.status, 1);
  EXPECT_EQ(said.out, "");
  EXPECT_NE(said.err.find("found an XML document"), std::string::npos) << said.err;
}

TEST_F(Outside, ExportWritesThroughALinkAndKeepsIt) {
  std::filesystem::create_directory(file("there"));
  for (const char *state : {"new", "old"}) {
    std::filesystem::remove(file("link"));
    std::filesystem::create_symlink("there/target", file("link"));
    expect_done({"export", "--image", file("link"), "--from", sample_});
    EXPECT_TRUE(std::filesystem::is_symlink(file("link"))) << state;
    EXPECT_GT(content_of(file("there/target")).size(), 1000u) << state;
  }
  std::filesystem::create_symlink("circle", file("circle"));
  expect_refused({"export", "--image", file("circle"), "--from", sample_}, {"circle"});
}

// By a link of the test's own, so that no other could be replaced.
TEST_F(Outside, ExportWritesToWhatIsHeldOpenAndReplacesNoName) {
  std::filesystem::create_symlink("/proc/self/fd/1", file("out"));
  expect_done({"export", "--text", file("text"), "--from", sample_});
  const Said said = run({"export", "--text", file("out"), "--from", sample_});
  EXPECT_EQ(said.status, 0) << said.err;
  EXPECT_EQ(said.out, content_of(file("text")));
  EXPECT_TRUE(std::filesystem::is_symlink(file("out")));
}

TEST_F(Outside, ExportClearsWhatAWriterThatWasEndedLeft) {
  tool_tests::Process ended(folder_, "ended", {"/bin/true"});
  const std::string gone = std::to_string(ended.id());
  EXPECT_EQ(ended.wait(), 0);
  put("tree.new-" + gone, "left");
  put("tree.new-" + std::to_string(getpid()), "at work");
  put("tree.new-x", "somebody's");
  expect_done({"export", "--image", file("tree"), "--from", sample_});
  EXPECT_FALSE(std::filesystem::exists(file("tree.new-" + gone)));
  EXPECT_TRUE(std::filesystem::exists(file("tree.new-" + std::to_string(getpid()))));
  EXPECT_TRUE(std::filesystem::exists(file("tree.new-x")));
}

}  // namespace
