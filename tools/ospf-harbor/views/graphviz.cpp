#include "views/graphviz.hpp"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <nlohmann/json.hpp>
#include <sstream>
#include <stdexcept>

namespace tool {

namespace {

// A file without a name that the child reads or writes: unlike a pipe it can hold any amount, so
// that neither process waits for the other.
class Scratch {
 public:
  Scratch() : file_(std::tmpfile()) {
    if (file_ == nullptr) {
      throw std::runtime_error(std::string("graph: no temporary file: ") + std::strerror(errno));
    }
  }
  ~Scratch() { std::fclose(file_); }
  Scratch(const Scratch &) = delete;
  Scratch &operator=(const Scratch &) = delete;

  int descriptor() const { return fileno(file_); }

  void fill(const std::string &content) {
    if (std::fwrite(content.data(), 1, content.size(), file_) != content.size() ||
        std::fflush(file_) != 0) {
      throw std::runtime_error(std::string("graph: writing a temporary file: ") +
                               std::strerror(errno));
    }
    std::rewind(file_);
  }

  std::string content() {
    std::rewind(file_);
    std::string content;
    char part[1 << 16];
    for (std::size_t got = 0; (got = std::fread(part, 1, sizeof part, file_)) != 0;) {
      content.append(part, got);
    }
    return content;
  }

 private:
  std::FILE *file_;
};

// "1,2 3,4" as four numbers.
std::vector<double> numbers_of(std::string text) {
  for (char &c : text) {
    if (c == ',') c = ' ';
  }
  std::istringstream in(text);
  std::vector<double> numbers;
  for (double number = 0; in >> number;) numbers.push_back(number);
  return numbers;
}

}  // namespace

std::string draw(const std::string &dot, const std::string &format) {
  Scratch in;
  Scratch out;
  Scratch messages;
  in.fill(dot);

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, in.descriptor(), STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, out.descriptor(), STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, messages.descriptor(), STDERR_FILENO);
  std::string program = "dot";
  std::string option = "-T" + format;
  char *arguments[] = {program.data(), option.data(), nullptr};
  pid_t child = 0;
  const int failure = posix_spawnp(&child, program.c_str(), &actions, nullptr, arguments, environ);
  posix_spawn_file_actions_destroy(&actions);
  if (failure != 0) {
    throw std::runtime_error(std::string("graph: cannot run Graphviz's \"dot\": ") +
                             std::strerror(failure) +
                             "; install the package graphviz, or ask for --dot");
  }
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  std::string picture = out.content();
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0 || picture.empty()) {
    std::string said = messages.content().substr(0, 400);
    throw std::runtime_error("graph: Graphviz made no picture" +
                             (said.empty() ? std::string() : ": " + said));
  }
  return picture;
}

Layout laid_out(const std::string &dot, std::size_t nodes, std::size_t edges) {
  const nlohmann::json graph = nlohmann::json::parse(draw(dot, "json0"));
  Layout layout;
  layout.nodes.resize(nodes);
  layout.edges.resize(edges);
  const std::vector<double> box = numbers_of(graph.at("bb"));
  layout.width = box.at(2);
  layout.height = box.at(3);
  const auto place_of = [](const nlohmann::json &part) {
    return std::stoul(part.at("id").get<std::string>().substr(1));
  };
  constexpr double points_of_an_inch = 72;
  for (const nlohmann::json &node : graph.value("objects", nlohmann::json::array())) {
    const std::vector<double> middle = numbers_of(node.at("pos"));
    layout.nodes.at(place_of(node)) = {middle.at(0), layout.height - middle.at(1),
                                       numbers_of(node.at("width")).at(0) * points_of_an_inch,
                                       numbers_of(node.at("height")).at(0) * points_of_an_inch};
  }
  for (const nlohmann::json &edge : graph.value("edges", nlohmann::json::array())) {
    std::vector<double> curve = numbers_of(edge.at("pos"));
    for (std::size_t at = 1; at < curve.size(); at += 2) curve[at] = layout.height - curve[at];
    layout.edges.at(place_of(edge)) = std::move(curve);
  }
  return layout;
}

}  // namespace tool
