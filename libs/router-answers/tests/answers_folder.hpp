// A folder of answers that a test writes, gone with the test.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "ospf_tables/input_error.hpp"
#include "router_answers/router.hpp"

class AnswersFolder : public testing::Test {
 protected:
  AnswersFolder() {
    std::string form = (std::filesystem::temp_directory_path() / "answers-XXXXXX").string();
    folder_ = mkdtemp(form.data());
  }
  ~AnswersFolder() override { std::filesystem::remove_all(folder_); }

  void write(const std::string &name, const std::string &text) {
    std::ofstream(folder_ / name, std::ios::binary) << text;
  }

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

  std::filesystem::path folder_;
};
