// Programs, the built tool above all, in processes of their own, with what it says kept in files.
// Each process is waited for, or ended by its id, before its test ends.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "support/places.hpp"
#include "support/temporary_folder.hpp"

namespace tool_tests {

// A program in a process of its own.
class Process {
 public:
  // words: the program's file first. name: of its files in the folder.
  Process(const std::filesystem::path &folder, const std::string &name,
          std::vector<std::string> words, const std::string &input = "/dev/null")
      : out_(folder / (name + ".out")), err_(folder / (name + ".err")) {
    std::vector<char *> arguments;
    for (std::string &word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    constexpr int flags = O_WRONLY | O_CREAT | O_TRUNC;
    const int in = open(input.c_str(), O_RDONLY);
    const int out = open(out_.c_str(), flags, 0600);
    const int err = open(err_.c_str(), flags, 0600);
    id_ = fork();
    if (id_ == 0) {
      dup2(in, 0);
      dup2(out, 1);
      dup2(err, 2);
      execv(arguments[0], arguments.data());
      _exit(127);
    }
    close(in);
    close(out);
    close(err);
  }
  ~Process() {
    if (id_ <= 0) return;
    kill(id_, SIGKILL);
    waitpid(id_, nullptr, 0);
  }
  Process(const Process &) = delete;
  Process &operator=(const Process &) = delete;

  pid_t id() const { return id_; }
  std::string out() const { return content_of(out_); }
  std::string err() const { return content_of(err_); }

  // The exit status, or minus the signal that ended it; does_not_end when neither comes.
  static constexpr int does_not_end = -1000;
  int wait() {
    for (int tries = 0; tries < 6000; ++tries) {
      int status = 0;
      if (waitpid(id_, &status, WNOHANG) == id_) {
        id_ = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return does_not_end;
  }

  // The line of its standard output with that number, counted from 0, as soon as it is whole.
  std::string line(std::size_t number) const {
    for (int tries = 0; tries < 3000; ++tries) {
      const std::string said = out();
      std::size_t start = 0;
      std::size_t end = said.find('\n');
      for (std::size_t before = number; before > 0 && end != said.npos; --before) {
        start = end + 1;
        end = said.find('\n', start);
      }
      if (end != said.npos) return said.substr(start, end - start);
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    ADD_FAILURE() << "does not say so much: " << out() << err();
    return "";
  }

  // The place where it says that it receives.
  std::string place() const {
    constexpr char words[] = "receiving at ";
    for (int tries = 0; tries < 3000; ++tries) {
      const std::string said = err();
      const std::size_t at = said.find(words);
      const std::size_t end = said.find('\n', at);
      if (at != said.npos && end != said.npos) {
        return said.substr(at + sizeof words - 1, end - at - sizeof words + 1);
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    ADD_FAILURE() << "does not receive: " << err();
    return "";
  }

 private:
  std::filesystem::path out_;
  std::filesystem::path err_;
  pid_t id_ = 0;
};

class ToolProcess : public Process {
 public:
  ToolProcess(const std::filesystem::path &folder, const std::string &name,
              std::vector<std::string> words, const std::string &input = "/dev/null")
      : Process(folder, name, with_tool(std::move(words)), input) {}

 private:
  static std::vector<std::string> with_tool(std::vector<std::string> words) {
    words.insert(words.begin(), places::tool());
    return words;
  }
};

struct Said {
  int status;
  std::string out;
  std::string err;
};

// Any program, run to its end.
inline Said run_program(const std::filesystem::path &folder,
                        const std::vector<std::string> &words) {
  Process process(folder, "program", words);
  const int status = process.wait();
  return {status, process.out(), process.err()};
}

// The tool with these words, run to its end.
inline Said run_tool(const std::vector<std::string> &words) {
  const TemporaryFolder folder;
  ToolProcess process(folder.path(), "tool", words);
  const int status = process.wait();
  return {status, process.out(), process.err()};
}

// A folder of its own for each test, and the tool run in it.
class ProcessTest : public testing::Test {
 protected:
  std::string file(const std::string &name) const { return temporary_.file(name); }
  void put(const std::string &name, const std::string &content) const {
    temporary_.put(name, content);
  }

  using Said = tool_tests::Said;
  Said run(const std::vector<std::string> &words, const std::string &input = "/dev/null") {
    ToolProcess process(folder_, "run" + std::to_string(++runs_), words, input);
    const int status = process.wait();
    return {status, process.out(), process.err()};
  }
  void expect_done(const std::vector<std::string> &words) {
    const Said said = run(words);
    EXPECT_EQ(said.status, 0) << said.err;
  }
  // Refused with status 1 in one line that holds the texts.
  void expect_refused(const std::vector<std::string> &words,
                      const std::vector<std::string> &texts) {
    expect_refusal(run(words), texts);
  }
  // The same of words that are wrong, with status 2.
  void expect_wrong_words(const std::vector<std::string> &words,
                          const std::vector<std::string> &texts) {
    expect_refusal(run(words), texts, 2);
  }
  static void expect_refusal(const Said &said, const std::vector<std::string> &texts,
                             int status = 1) {
    EXPECT_EQ(said.status, status) << said.err;
    const std::size_t start = said.err.find("ospf-harbor: ");
    ASSERT_NE(start, std::string::npos) << said.err;
    const std::string line = said.err.substr(start);
    EXPECT_EQ(line.find('\n'), line.size() - 1) << line;
    for (const std::string &text : texts) EXPECT_NE(line.find(text), std::string::npos) << line;
  }

  const std::string sample_ = places::sample() + "/r1";
  const std::string other_sample_ = places::sample() + "/r2";
  const TemporaryFolder temporary_;
  const std::filesystem::path &folder_ = temporary_.path();
  int runs_ = 0;
};

}  // namespace tool_tests
