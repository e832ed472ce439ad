// A folder of answers that a test writes, gone with the test.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "ospf_tables/input_error.hpp"
#include "router_answers/router.hpp"
#include "support/temporary_folder.hpp"

class AnswersFolder : public testing::Test {
 protected:
  void write(const std::string &name, const std::string &text) { temporary_.put(name, text); }

  router_answers::Router read() {
    router_answers::PassedOver passed_over;
    return router_answers::read_router(folder_.string(), passed_over);
  }

  // Reading fails with a line that holds all of these.
  void expect_refused(const std::vector<std::string> &parts) {
    try {
      read();
      ADD_FAILURE() << "was read";
    } catch (const ospf_tables::InputError &failure) {
      const std::string line = failure.what();
      for (const std::string &part : parts) {
        EXPECT_NE(line.find(part), std::string::npos) << part << " is not in: " << line;
      }
    }
  }

  const TemporaryFolder temporary_;
  const std::filesystem::path &folder_ = temporary_.path();
};
