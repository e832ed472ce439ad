#include "sources/name_list.hpp"

#include <cerrno>
#include <fstream>
#include <optional>
#include <sstream>

#include "ospf_tables/row_keys.hpp"
#include "ospf_tables/system_error.hpp"

namespace tool {

using namespace ospf_tables;

void read_names(const std::string &file, RouterNames &names) {
  errno = 0;
  std::ifstream in(file);
  if (!in) throw cannot("open", file, errno);
  RouterNames read;
  std::size_t number = 0;
  for (std::string line; std::getline(in, line);) {
    ++number;
    std::istringstream words(line.substr(0, line.find('#')));
    std::string id;
    std::string name;
    if (!(words >> id)) continue;
    const std::optional<std::uint32_t> router = parse_dotted(id);
    if (!router || !(words >> name)) {
      throw InputError(file, "line " + std::to_string(number), "\"" + line + "\"",
                       "a router ID and a name, such as \"10.0.0.1 core1\"");
    }
    read[*router] = in_one_line(name);
  }
  if (in.bad()) throw cannot("read", file, errno);
  for (auto &[router, name] : read) names[router] = std::move(name);
}

}  // namespace tool
