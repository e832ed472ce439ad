#include "commands/help_texts.hpp"

#include <algorithm>
#include <iterator>
#include <sstream>

namespace tool {

namespace {

constexpr HelpText help_texts[] = {
    {"load frr", "load frr routers/r1 routers/r2 --show\nload frr routers/r1 --store net.store"},
    {"load capture",
     "load capture core.pcap edge.pcap --show\nload capture -i eth0 --seconds 60 --json"},
    {"collect", "collect -i eth0 --store net.store"},
    {"show", "show --from site.pcap\nshow area/0.0.0.0/interface --json --from routers/r1"},
    {"neighbors",
     "neighbors --v2 --area 0 --from site.pcap\nneighbors --names names.txt --from routers"},
    {"interfaces", "interfaces --router 10.0.0.1 --from site.pcap"},
    {"areas", "areas --v3 --from site.pcap"},
    {"routers", "routers --area 1 --json --from routers"},
    {"lsdb",
     "lsdb --v2 --area 2 --from site.pcap\n"
     "lsdb --type external --prefix 100.64.0.0/10+ --from site.pcap\n"
     "lsdb --type opaque --adv-router 10.0.0.1 --detail --from routers"},
    {"watch", "watch area/0.0.0.0 --json --store net.store\nwatch --from nats://hub --name paris"},
    {"replicate",
     "replicate --store net.store --to nats://hub --name paris\n"
     "replicate --store paris.store --from nats://hub --name paris\n"
     "replicate --status --store p.store --from nats://hub --name paris",
     {"it ended by a signal, or --status found both ends the same",
      "--status found a table that differs, or something is wrong with the engine or the data"}},
    {"graph",
     "graph --svg -o net.svg --from site.pcap\n"
     "graph --html -o net.html --names names.txt --from routers\n"
     "graph --png --addresses --area 1 -o area1.png --from site.pcap\n"
     "graph --html -o change.html --diff before.pcap after.pcap\n"
     "graph --svg --diff a.pcap a.pcap --at 08:30:00 --at 08:45:00\n"
     "graph --pdf --without-router 10.0.0.3 --from a.pcap > left.pdf"},
    {"routes",
     "routes --router 10.0.0.1 --from site.pcap\n"
     "routes --router all --without-router 10.0.0.3 --from routers"},
    {"path",
     "path 10.0.0.1 10.0.0.6 --from site.pcap\n"
     "path 10.0.0.1 192.0.2.0/24 --rfc1583 --from routers\n"
     "path 10.0.0.1 10.0.0.6 --svg -o ways.svg --from site.pcap\n"
     "path 10.0.0.1 10.0.0.6 --html --from routers > ways.html"},
    {"failures", "failures --v2 --from site.pcap"},
    {"check",
     "check --from site.pcap\ncheck --fail-on error --json --from routers",
     {"nothing was found that is as bad as --fail-on says", "such a thing was found",
      "a source cannot be read, or only in part, or the command line is wrong", true}},
    {"events", "events --since 08:30:00 --from site.pcap"},
    {"diff",
     "diff before.pcap after.pcap\ndiff site.pcap --at 08:30:00 --at 08:45:00 --router 10.0.0.1",
     {"both say the same", "they differ", "a source cannot be read, or the command line is wrong",
      true}},
    {"export", "export --image net.tree --xml net.xml --from routers"},
    {"import", "import --image net.tree --show\nimport --xml net.xml --store net.store"},
    {"send", "send --to unix:/run/net.socket --from site.pcap"},
    {"receive", "receive --at unix:/run/net.socket --show"},
    {"store info", "store info net.store"},
    {"store check", "store check net.store"},
    {"store compact", "store compact net.store"},
    {"dump", "dump --annotate net.tree"},
    {"trace", "trace run.trace --level error\ntrace run.trace --level debug --follow"},
    {"inspect", "inspect libospf_harbor_oper.so --messages"},
    {"model", "model ospf_area\nmodel --json"},
    {"shell", "shell < commands.txt"},
    {"help", "help load capture"},
    {"man", "man lsdb > ospf-harbor-lsdb.1"},
    {"completion", "completion bash > ospf-harbor.bash"},
    {"", ""},
};

// Where what follows a break goes on: under the text of the last column.
std::size_t column_of(const std::string &line) {
  const std::size_t start = std::min(line.find_first_not_of(' '), line.size());
  const std::size_t gap = line.find("  ", start);
  const std::size_t text = gap == line.npos ? gap : line.find_first_not_of(' ', gap);
  return text == line.npos ? start : text;
}

}  // namespace

const HelpText &help_text(const std::string &command) {
  const auto found = std::find_if(std::begin(help_texts), std::end(help_texts) - 1,
                                  [&](const HelpText &each) { return each.command == command; });
  return *found;
}

std::string footer_of(const std::string &command) {
  const HelpText &text = help_text(command);
  std::string footer;
  std::istringstream lines(text.examples);
  for (std::string line; std::getline(lines, line);) {
    footer += (footer.empty() ? "Examples:\n" : "") + ("  ospf-harbor " + line) + "\n";
  }
  const Statuses &statuses = text.statuses;
  return footer + (footer.empty() ? "" : "\n") + "Exit status:\n  0  " + statuses.zero + "\n  1  " +
         statuses.one + "\n  2  " + statuses.two + "\n";
}

std::string wrapped(const std::string &text, std::size_t width) {
  std::string result;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    line.erase(line.find_last_not_of(' ') + 1);
    const std::size_t column = column_of(line);
    while (line.size() > width) {
      const std::size_t blank = line.rfind(' ', width);
      if (blank == line.npos || blank <= column) break;
      result += line.substr(0, blank) + "\n";
      line = std::string(column, ' ') + line.substr(blank + 1);
    }
    result += line + "\n";
  }
  return result;
}

}  // namespace tool
