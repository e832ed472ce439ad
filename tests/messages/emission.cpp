#include "messages/emission.hpp"

#include <gtest/gtest.h>
#include <kelp/trace.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstring>

namespace messages {

namespace {

constexpr std::size_t argument_space = 160;
constexpr int failed_expectation = 99;

// Shared between the test and its child, so that it outlives an abort().
struct Page {
  struct Noted {
    std::uint8_t identity[16];
    std::uint32_t index;
    std::uint32_t level;
    std::uint32_t argument_count;
    char signature[8];
    char arguments[3][argument_space];
  };
  std::uint32_t count;
  std::uint32_t stated_count;
  bool has_stated;
  char stated[3][argument_space];
  Noted noted[64];
};

Page &page() {
  static Page *const shared = static_cast<Page *>(
      mmap(nullptr, sizeof(Page), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
  return *shared;
}

int complaints_file() {
  static const int file = memfd_create("complaints", 0);
  return file;
}

void put(char *place, std::string_view text) {
  const std::size_t length = std::min(text.size(), argument_space - 1);
  std::memcpy(place, text.data(), length);
  place[length] = 0;
}

std::string text_of(const kelp_trace_argument &argument) {
  switch (argument.kind) {
    case 1:
      return argument.text == nullptr ? "(null)" : std::string(argument.text, argument.text_length);
    case 4:
      return number(argument.number);
    default:
      return pointer(reinterpret_cast<const void *>(argument.pointer));
  }
}

int note(void *, const kelp_trace_event *event) {
  const char *module = kelp_trace_module_name(event->module);
  if (module != nullptr && std::strcmp(module, "kelp_ospf_harbor_oper") != 0) return 0;
  if (page().count == std::size(page().noted)) {
    ADD_FAILURE() << "more messages than are kept";
    return 0;
  }
  Page::Noted &noted = page().noted[page().count++];
  std::memcpy(noted.identity, event->identity, sizeof noted.identity);
  noted.index = event->index;
  noted.level = event->level;
  noted.argument_count = event->argument_count;
  std::memcpy(noted.signature, event->signature, sizeof event->signature);
  for (std::uint8_t i = 0; i < event->argument_count; ++i) {
    put(noted.arguments[i], text_of(event->arguments[i]));
  }
  return 0;
}

// Of the test so far: a child inherits what has failed before it.
int failed_expectations() {
  return testing::UnitTest::GetInstance()->current_test_info()->result()->total_part_count();
}

[[noreturn]] void run_child(const std::function<void()> &code) {
  const rlimit no_core{0, 0};
  setrlimit(RLIMIT_CORE, &no_core);
  std::signal(SIGABRT, SIG_DFL);
  dup2(complaints_file(), STDOUT_FILENO);
  dup2(complaints_file(), STDERR_FILENO);
  kelp_trace_set_level(nullptr, KELP_TRACE_DEBUG);
  kelp_trace_set_sink(note, nullptr);
  const int before = failed_expectations();
  code();
  const bool well = failed_expectations() == before;
  std::fflush(stdout);
  _exit(well ? 0 : failed_expectation);
}

std::string read_complaints() {
  std::string text;
  char chunk[4096];
  lseek(complaints_file(), 0, SEEK_SET);
  for (ssize_t got = read(complaints_file(), chunk, sizeof chunk); got > 0;
       got = read(complaints_file(), chunk, sizeof chunk)) {
    text.append(chunk, static_cast<std::size_t>(got));
  }
  return text;
}

}  // namespace

Outcome in_child(const std::function<void()> &code) {
  std::memset(&page(), 0, sizeof(Page));
  EXPECT_EQ(ftruncate(complaints_file(), 0), 0);
  lseek(complaints_file(), 0, SEEK_SET);
  std::fflush(stdout);
  const pid_t child = fork();
  if (child == 0) run_child(code);
  int status = 0;
  EXPECT_EQ(waitpid(child, &status, 0), child);

  Outcome outcome;
  outcome.ended = WIFEXITED(status) && WEXITSTATUS(status) == 0;
  outcome.aborted = WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT;
  outcome.has_stated_arguments = page().has_stated;
  for (std::uint32_t i = 0; i < page().stated_count; ++i) {
    outcome.stated_arguments.emplace_back(page().stated[i]);
  }
  for (std::uint32_t at = 0; at < page().count; ++at) {
    const Page::Noted &noted = page().noted[at];
    Emission emission{{}, noted.index, noted.level, noted.signature, {}};
    std::memcpy(emission.identity, noted.identity, sizeof emission.identity);
    for (std::uint32_t i = 0; i < noted.argument_count; ++i) {
      emission.arguments.emplace_back(noted.arguments[i]);
    }
    outcome.emissions.push_back(std::move(emission));
  }
  outcome.complaints = read_complaints();
  return outcome;
}

void arguments_are(std::initializer_list<std::string> arguments) {
  page().count = 0;
  page().has_stated = true;
  page().stated_count = 0;
  for (const std::string &argument : arguments) put(page().stated[page().stated_count++], argument);
}

std::string number(std::uint32_t value) { return std::to_string(value); }

std::string pointer(const void *value) {
  char text[32];
  std::snprintf(text, sizeof text, "%p", value);
  return text;
}

}  // namespace messages
