// An example under every fault that a database can be told to have: each run ends with a
// message and status 1, none ends in a signal, and whatever can still be given back is.
#include <gtest/gtest.h>
#include <kelp/embed.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <stdexcept>
#include <string>

extern "C" {
int example_main();
kelp_database *__real_kelp_database_open_private(const char *name,
                                                 const kelp_database_options *options,
                                                 kelp_error *error);
}

namespace {

std::uint32_t fault = KELP_FAULT_COUNT;
std::int64_t after = -1;

struct Ending {
  int status = -1;  // of the process; 128 and more for a signal
  std::string out, err;
};

std::string read_all(int from) {
  std::string text;
  std::array<char, 4096> piece;
  for (ssize_t got; (got = read(from, piece.data(), piece.size())) > 0;)
    text.append(piece.data(), static_cast<std::size_t>(got));
  close(from);
  return text;
}

// What is printed fits into a pipe, so one can be read after the other.
Ending run_with(std::uint32_t kind, std::int64_t n) {
  int out[2], err[2];
  if (pipe(out) != 0 || pipe(err) != 0) throw std::runtime_error("no pipe");
  const pid_t child = fork();
  if (child == 0) {
    dup2(out[1], STDOUT_FILENO);
    dup2(err[1], STDERR_FILENO);
    fault = kind;
    after = n;
    const int status = example_main();
    std::fflush(stdout);
    _exit(status);
  }
  close(out[1]);
  close(err[1]);
  Ending run;
  run.out = read_all(out[0]);
  run.err = read_all(err[0]);
  int ended = 0;
  waitpid(child, &ended, 0);
  run.status = WIFSIGNALED(ended) ? 128 + WTERMSIG(ended) : WEXITSTATUS(ended);
  return run;
}

class Example : public testing::TestWithParam<std::uint32_t> {};

TEST_P(Example, SaysWhatFailed) {
  const Ending sound = run_with(KELP_FAULT_COUNT, -1);
  ASSERT_EQ(sound.status, 0) << sound.err;
  ASSERT_NE(sound.out, "");
  std::int64_t n = 0;
  for (;; ++n) {
    ASSERT_LT(n, 1000);
    const Ending run = run_with(GetParam(), n);
    if (run.status == 0) {
      EXPECT_EQ(run.out, sound.out);
      EXPECT_EQ(run.err, "");
      break;
    }
    // A table without an identity cannot be: the library says so and ends the process.
    const bool ends_process = GetParam() == KELP_FAULT_OID_MAPPING;
    EXPECT_EQ(run.status, ends_process ? 128 + SIGABRT : 1) << "call " << n << ": " << run.err;
    EXPECT_NE(run.err, "") << "call " << n;
    EXPECT_EQ(run.err.find("no reason given"), std::string::npos) << "call " << n << run.err;
  }
  EXPECT_GT(n, 0) << "the fault was never met";
}

INSTANTIATE_TEST_SUITE_P(Faults, Example,
                         testing::Values(KELP_FAULT_ALLOCATION, KELP_FAULT_OID_MAPPING,
                                         KELP_FAULT_TOC_OPEN, KELP_FAULT_TOC_FIND,
                                         KELP_FAULT_TOC_INSERT, KELP_FAULT_TOC_DELETE));

}  // namespace

extern "C" kelp_database *__wrap_kelp_database_open_private(const char *name,
                                                            const kelp_database_options *options,
                                                            kelp_error *error) {
  kelp_database *database = __real_kelp_database_open_private(name, options, error);
  if (database != nullptr && fault != KELP_FAULT_COUNT)
    kelp_database_fail_after(database, fault, after);
  return database;
}
