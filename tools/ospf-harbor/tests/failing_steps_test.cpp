// A step from row to row that fails: each command that walks the tree prints all of it, or tells.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <kelp/core.h>
#include <kelp/database.h>

#include "commands/commands.hpp"
#include "support/places.hpp"
#include "support/temporary_file.hpp"
#include "support/temporary_folder.hpp"

namespace {

int steps_until_failure = -1;  // none when it is negative
int steps = 0;

struct Said {
  int status;
  std::string out;
  std::string err;
};

// file: what the command writes instead of printing, taken as its output.
Said said_by(ospf_tables::Session &session, const std::vector<std::string> &words,
             const TemporaryFile *file = nullptr) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  const int status = tool::run_line(session, words);
  std::fflush(stdout);
  std::string out = testing::internal::GetCapturedStdout();
  if (file != nullptr) {
    out = content_of(file->path());
    std::remove(file->path().c_str());
  }
  return {status, out, testing::internal::GetCapturedStderr()};
}

// All of it, or an error, whichever step fails.
void expect_whole_or_told(const std::vector<std::string> &load,
                          const std::vector<std::string> &words,
                          const TemporaryFile *file = nullptr) {
  ospf_tables::Session session;
  steps_until_failure = -1;
  ASSERT_EQ(said_by(session, load).status, 0);
  steps = 0;
  const Said whole = said_by(session, words, file);
  ASSERT_EQ(whole.status, 0) << whole.err;
  ASSERT_GT(whole.out.size(), 100u);
  const int all = steps;
  ASSERT_GT(all, 5);
  int told = 0;
  for (int failing = 0; failing < all; failing += 1 + all / 200) {
    steps_until_failure = failing;
    const Said said = said_by(session, words, file);
    steps_until_failure = -1;
    if (said.status == 0) {
      EXPECT_EQ(said.out, whole.out) << words[0] << ", step " << failing;
    } else {
      ++told;
      if (file != nullptr) {
        EXPECT_EQ(said.out, "");
      }
      EXPECT_TRUE(said.err.starts_with("ospf-harbor: ")) << said.err;
    }
  }
  EXPECT_GT(told, 0);
}

const std::vector<std::string> router{"load", "frr", places::sample() + "/r1"};
const std::vector<std::string> capture{"load", "capture", places::sample() + "/all.pcap"};

TEST(FailingSteps, ShowEverythingOrTell) {
  expect_whole_or_told(router, {"show"});
  expect_whole_or_told(router, {"show", "--json"});
  expect_whole_or_told(capture, {"lsdb", "--v2"});
  expect_whole_or_told(capture, {"graph", "--dot"});
}

TEST(FailingSteps, ExportEverythingOrTell) {
  const TemporaryFile file("exported");
  for (const char *form : {"--text", "--image", "--xml"}) {
    expect_whole_or_told(router, {"export", form, file.path()}, &file);
  }
}

}  // namespace

// In front of the runtime's: a reader that is given a record asks for a place in its cache.
extern "C" __attribute__((visibility("default"))) void kelprepl_add_to_cache(kelp_handle *handle,
                                                                             std::uint32_t space_id,
                                                                             kelp_table *table,
                                                                             kelp_record *record,
                                                                             std::uint32_t *err) {
  ++steps;
  if (steps_until_failure >= 0 && steps_until_failure-- == 0) {
    kelp_store_err(handle, KELP_ERR_NO_MEMORY);
    *err = KELP_ERR_NO_MEMORY;
    return;
  }
  using Function = void(kelp_handle *, std::uint32_t, kelp_table *, kelp_record *, std::uint32_t *);
  static const auto next = reinterpret_cast<Function *>(dlsym(RTLD_NEXT, "kelprepl_add_to_cache"));
  next(handle, space_id, table, record, err);
}
