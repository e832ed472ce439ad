// The shell at a terminal: a pseudo terminal of its own stands where a person would, types keys and
// reads what is shown.
#include <poll.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

#include "commands/commands.hpp"
#include "commands/shell_completion.hpp"
#include "commands/shell_words.hpp"
#include "sources/sources.hpp"
#include "support/processes.hpp"
#include "terminal.hpp"

namespace {

namespace fs = std::filesystem;

constexpr char prompt[] = "ospf-harbor> ";

// The shell on a terminal of 80 columns, with a home and a folder of its own.
class Terminal {
 public:
  explicit Terminal(const fs::path &folder) {
    winsize size{24, 80, 0, 0};
    id_ = tool_tests::fork_at_terminal(terminal_, &size);
    if (id_ != 0) return;
    if (chdir(folder.c_str()) != 0) _exit(126);
    setenv("HOME", folder.c_str(), 1);
    setenv("TERM", "xterm", 1);
    execl(places::tool().c_str(), "ospf-harbor", "shell", static_cast<char *>(nullptr));
    _exit(127);
  }
  ~Terminal() {
    if (id_ > 0) {
      kill(id_, SIGKILL);
      waitpid(id_, nullptr, 0);
    }
    close(terminal_);
  }
  Terminal(const Terminal &) = delete;
  Terminal &operator=(const Terminal &) = delete;

  // The prompt is shown before the terminal gives its keys one by one; until then it would take a
  // control key as its own.
  void type(const std::string &keys) {
    termios mode{};
    for (int tries = 0; tries < 10'000; ++tries) {
      if (tcgetattr(terminal_, &mode) == 0 && (mode.c_lflag & ICANON) == 0) break;
      usleep(1000);
    }
    EXPECT_EQ(mode.c_lflag & ICANON, 0u) << "the shell reads no keys";
    EXPECT_EQ(write(terminal_, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
  }

  // What is shown up to and with the text; fails when it does not come.
  std::string until(const std::string &text) {
    std::size_t at = 0;
    for (pollfd wait{terminal_, POLLIN, 0}; (at = shown_.find(text)) == shown_.npos;) {
      char part[4096];
      const bool comes = poll(&wait, 1, 60'000) == 1;
      const ssize_t got = comes ? read(terminal_, part, sizeof part) : -1;
      if (got <= 0) {
        ADD_FAILURE() << "\"" << text << "\" does not come, but: " << shown_;
        return std::exchange(shown_, "");
      }
      shown_.append(part, static_cast<std::size_t>(got));
    }
    const std::string before = shown_.substr(0, at + text.size());
    shown_.erase(0, before.size());
    return before;
  }

  // Types keys, and gives what is shown until the next prompt.
  std::string enter(const std::string &line) {
    type(line + "\r");
    until("\n");
    return until(prompt);
  }

  // The exit status, once the shell has left its terminal.
  int wait() {
    char part[4096];
    pollfd left{terminal_, POLLIN, 0};
    while (poll(&left, 1, 60'000) == 1 && read(terminal_, part, sizeof part) > 0) {
    }
    int status = 0;
    if (!(left.revents & POLLHUP) || waitpid(id_, &status, 0) != id_) return -1;
    id_ = 0;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  }

 private:
  pid_t id_ = 0;
  int terminal_ = -1;
  std::string shown_;  // that no until() has given
};

class ShellTerminal : public testing::Test {
 protected:
  ShellTerminal() { fs::create_symlink(places::sample() + "/all.pcap", folder_ / "a network"); }

  const TemporaryFolder temporary_;
  const fs::path &folder_ = temporary_.path();
};

TEST_F(ShellTerminal, CompletesEditsAndRemembersWhatIsTyped) {
  Terminal terminal(folder_);
  terminal.until(prompt);
  // A group, its command, and a file with a blank in its name.
  EXPECT_NE(terminal.enter("lo\tc\ta\t").find("loaded OSPFv2"), std::string::npos);
  // Several: the line goes on as far as they agree, and they are listed.
  terminal.type("routes --router 10\t\t");
  const std::string listed = terminal.until(std::string(prompt) + "routes --router 10.255.0.");
  for (int router = 1; router <= 6; ++router) {
    EXPECT_NE(listed.find("10.255.0." + std::to_string(router)), std::string::npos) << listed;
  }
  EXPECT_NE(terminal.enter("1 --v2").find("10.0.12.0/30"), std::string::npos);
  // The line before, and one that is changed at its beginning.
  terminal.type("\x1b[A");
  terminal.until("routes --router 10.255.0.1 --v2");
  EXPECT_NE(terminal.enter("").find("10.0.12.0/30"), std::string::npos);
  terminal.type("path 10.255.0.1 10.255.0.2\x01\x04\x04\x04\x04");
  EXPECT_NE(terminal.enter("lode").find("\"lode\""), std::string::npos);
  terminal.type("exit\r");
  EXPECT_EQ(terminal.wait(), 2);  // the worst of its lines
}

TEST_F(ShellTerminal, KeepsItsHistoryAndLeavesLinesByControlC) {
  {
    Terminal terminal(folder_);
    terminal.until(prompt);
    terminal.enter("help areas");
    terminal.type("lode\x03");
    terminal.until("^C");
    terminal.until(prompt);
    terminal.type("\x04");
    EXPECT_EQ(terminal.wait(), 0);  // the line that was left was not run
  }
  struct stat info {};
  ASSERT_EQ(stat((folder_ / ".ospf_harbor_history").c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 0777, 0600u);
  Terminal terminal(folder_);
  terminal.until(prompt);
  terminal.type("\x1b[A");
  terminal.until("help areas");
}

// --- words ---------------------------------------------------------------------------------------

TEST(ShellWords, AreReadAsTheyAreQuoted) {
  for (const std::string word :
       {"plain", "a b", "it's", "say \"so\"", "back\\slash", "\tab", "#note", "' \" \\ '"}) {
    for (const char quote : {'\0', '\'', '"'}) {
      const std::string typed =
          tool::quoted_word(word, quote) + (quote == 0 ? "" : std::string(1, quote));
      const tool::ShellWords split = tool::split_words("show " + typed);
      ASSERT_EQ(split.words.size(), 2u) << typed;
      EXPECT_EQ(split.words[1], word) << typed;
      EXPECT_EQ(split.open_quote, 0) << typed;
      EXPECT_EQ(split.last_start, 5u);
    }
  }
}

class ShellCompletion : public testing::Test {
 protected:
  ShellCompletion() { tool::load_sources(session_, {places::sample() + "/all.pcap"}); }

  std::vector<std::string> words(const std::vector<std::string> &before, const std::string &begun) {
    std::vector<std::string> found;
    for (const tool::Completion &each : tool::completions(session_, before, begun)) {
      found.push_back(each.word);
    }
    return found;
  }
  using Words = std::vector<std::string>;

  ospf_tables::Session session_;
};

TEST_F(ShellCompletion, KnowsCommandsAndOptions) {
  EXPECT_EQ(words({}, "lo"), Words{"load"});
  EXPECT_EQ(words({"load"}, ""), (Words{"capture", "frr"}));
  EXPECT_EQ(words({"help", "load"}, "c"), Words{"capture"});
  EXPECT_EQ(words({"graph"}, "--ht"), Words{"--html"});
  EXPECT_EQ(words({"lode"}, ""), Words{});
  EXPECT_EQ(words({}, "shell"), Words{});  // which stands on the command line alone
}

TEST_F(ShellCompletion, KnowsWhatTheTablesHold) {
  EXPECT_EQ(words({"lsdb", "--area"}, ""), (Words{"0.0.0.0", "0.0.0.1", "0.0.0.2"}));
  EXPECT_EQ(words({"path", "10.255.0.1"}, "10.255.0.6"), Words{"10.255.0.6"});
  EXPECT_EQ(words({"show"}, "ar"), (Words{"area-lsa/", "area-lsas/", "area/"}));
  EXPECT_EQ(words({"show"}, "area/"), (Words{"area/0.0.0.0", "area/0.0.0.1", "area/0.0.0.2"}));
  const Words below = words({"show"}, "area/0.0.0.2/");
  EXPECT_TRUE(std::ranges::count(below, "area/0.0.0.2/interface/") == 1);
  EXPECT_TRUE(std::ranges::count(below, "area/0.0.0.2/area/") == 0);
  for (const std::string &path : words({"show"}, "area/0.0.0.2/interface/")) {
    EXPECT_EQ(tool::run_words(session_, {"show", path}), 0) << path;
  }
  EXPECT_EQ(words({"show"}, "nothing/"), Words{});
}

TEST_F(ShellCompletion, KnowsFiles) {
  const TemporaryFolder folder;
  folder.put("one", "");
  folder.put(".hidden", "");
  fs::create_directory(folder.path() / "other");
  const std::string before = folder.path().string() + "/";
  EXPECT_EQ(words({"load", "capture"}, before), (Words{before + "one", before + "other/"}));
  EXPECT_EQ(words({"graph", "--svg", "-o"}, before + "on"), Words{before + "one"});
  EXPECT_EQ(words({"load", "capture"}, before + "."), Words{before + ".hidden"});
  EXPECT_EQ(words({"load", "capture"}, before + "none/"), Words{});
}

}  // namespace
