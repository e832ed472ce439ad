// Who built the library's file, where and when: the second record of its manifest section. For
// people who hold a file in their hands; nothing reads it back.
#pragma once

#include <filesystem>
#include <string>

namespace emit {

// Both absolute.
struct BuildFolders {
  std::filesystem::path build;
  std::filesystem::path project;
};

// The text, without the NUL. With SOURCE_DATE_EPOCH in the environment the time is the one that it
// gives, folders are named relative to the project's, and user, host and process are withheld, so
// that two builds of one source give one file. Throws when that variable is no decimal number.
std::string build_record(const BuildFolders &folders);

}  // namespace emit
