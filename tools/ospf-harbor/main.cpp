// ospf-harbor: looks at real OSPF networks through the library's tables.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>

#include "commands/commands.hpp"
#include "commands/exchange_options.hpp"
#include "commands/graph_command.hpp"
#include "commands/inspect_command.hpp"
#include "commands/lsdb_command.hpp"
#include "commands/trace_command.hpp"
#include "sources/capture_command.hpp"
#include "sources/sources.hpp"
#include "traces/trace_file.hpp"

namespace {

int run(int argc, char **argv) {
  CLI::App app{"Looks at OSPF networks: loads what routers say into typed tables and shows them."};
  app.require_subcommand(1);
  app.set_help_all_flag("--help-all", "Help of all commands");

  CLI::App *load = app.add_subcommand("load", "Load state into the tables of this run");
  load->require_subcommand(1);
  CLI::App *frr = load->add_subcommand(
      "frr", "Read the JSON that a routing daemon prints (ip-ospf*.json, ipv6-ospf6*.json)");
  std::vector<std::string> folders;
  frr->add_option("FOLDER", folders, "One folder for each router")->required();
  bool then_show = false;
  std::string path;
  frr->add_flag("--show", then_show, "Show the tree afterwards");
  frr->add_option("--path", path, "What to show of it, such as area/0.0.0.0/interface/eth0");

  CLI::App *capture =
      load->add_subcommand("capture", "Read the OSPF packets of captures (pcap, pcapng)");
  tool::CaptureOptions heard;
  auto *files = capture->add_option("FILE", heard.files, "Captures; - is standard input");
  capture->add_option("-i", heard.interface, "Listen on an interface instead, without sending")
      ->excludes(files);
  capture->add_option("--seconds", heard.seconds, "How long to listen; until a signal without it");
  capture->add_flag("--show", then_show, "Show the tree afterwards");
  capture->add_option("--path", path, "What to show of it");

  CLI::App *show = app.add_subcommand("show", "Load routers and print the tree, or a part of it");
  std::string show_at;
  std::vector<std::string> show_sources;
  show->add_option("PATH", show_at,
                   "Rows by kind and key, such as area/0.0.0.0/interface/eth0; all without it");
  show->add_option("--from", show_sources, tool::source_help)->required();
  bool show_json = false;
  show->add_flag("--json", show_json, "One JSON object a line");

  CLI::App *shell =
      app.add_subcommand("shell", "Read commands from standard input, one a line, on one database");

  tool::TraceFile trace_file(app);
  const tool::Command commands[] = {tool::add_trace_command(app), tool::add_inspect_command(app),
                                    tool::add_lsdb_command(app), tool::add_graph_command(app)};
  tool::ExchangeCommand exchange;
  tool::add_exchange_commands(app, &exchange);

  CLI11_PARSE(app, argc, argv);
  trace_file.open();
  for (const tool::Command &command : commands) {
    if (command.app->parsed()) return command.run();
  }

  ospf_tables::Session session;
  if (exchange) return exchange(session);
  if (shell->parsed()) return tool::run_shell(session);
  if (show->parsed()) {
    const int status = tool::load_sources(session, show_sources);
    return std::max(status, tool::show_path(session, show_at, show_json));
  }
  int status = 0;
  if (capture->parsed()) {
    status = tool::load_capture(session, heard);
  } else {
    tool::load_frr(session, folders);
  }
  const int shown = then_show || !path.empty() ? tool::show_path(session, path) : 0;
  return status != 0 ? status : shown;
}

}  // namespace

int main(int argc, char **argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception &failure) {
    std::fflush(stdout);
    std::fprintf(stderr, "ospf-harbor: %s\n", failure.what());
    return 1;
  }
}
