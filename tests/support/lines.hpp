// The lines of a text file, without their ends. One that cannot be read fails the test.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

using Lines = std::vector<std::string>;

inline Lines read_lines(const std::string &path) {
  std::ifstream file(path);
  EXPECT_TRUE(file.good()) << path;
  Lines lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}
