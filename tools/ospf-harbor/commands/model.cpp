// `model`: what the model has, read from its JSON form, which is the same as docs/model.json.
#include <algorithm>
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <tuple>

#include "commands/command.hpp"
#include "views/table.hpp"

extern "C" {
extern const char ospf_harbor_model_json[];
extern const char ospf_harbor_model_json_end[];
}

namespace tool {

namespace {

using ModelJson = nlohmann::ordered_json;

// The lists, and what one of each is called.
constexpr std::pair<const char *, const char *> model_lists[] = {{"structures", "structure"},
                                                                 {"enumerations", "enumeration"},
                                                                 {"flag_sets", "flag set"},
                                                                 {"tables", "table"}};

// Every type and table, each with its kind as its first key.
std::vector<ModelJson> model_rows() {
  const ModelJson model = ModelJson::parse(ospf_harbor_model_json, ospf_harbor_model_json_end);
  std::vector<ModelJson> rows;
  for (const auto &[list, kind] : model_lists) {
    for (const ModelJson &each : model.at(list)) {
      rows.push_back({{"kind", kind}});
      rows.back().update(each);
    }
  }
  return rows;
}

std::string text_in(const ModelJson &row, const char *key) {
  const ModelJson &value = row.at(key);
  return value.is_string() ? value.get<std::string>() : value.dump();
}

// How many letters are to be put in, left out or changed to make one word of the other.
std::size_t letters_apart(const std::string &a, const std::string &b) {
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i);
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t changed = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({changed, row[j] + 1, row[j - 1] + 1});
    }
  }
  return row.back();
}

std::string nearest_names(const std::vector<ModelJson> &rows, const std::string &asked) {
  // Names that hold what was asked for come first.
  std::vector<std::tuple<bool, std::size_t, std::string>> names;
  for (const ModelJson &row : rows) {
    const std::string name = text_in(row, "name");
    names.emplace_back(name.find(asked) == name.npos, letters_apart(asked, name), name);
  }
  std::sort(names.begin(), names.end());
  return std::get<2>(names[0]) + ", " + std::get<2>(names[1]) + ", " + std::get<2>(names[2]);
}

void print_model_table(const ModelJson &rows, const std::vector<Column> &columns,
                       const std::vector<const char *> &keys) {
  Table table(columns);
  for (const ModelJson &row : rows) {
    std::vector<Cell> cells;
    for (const char *key : keys) cells.emplace_back(text_in(row, key));
    // An arm is there when the choice's selector has its value.
    if (row.contains("selector")) cells[2].text += " of " + text_in(row, "selector");
    table.add(std::move(cells));
  }
  table.print(stdout, Screen{});
}

std::string sizes_of(const ModelJson &type) {
  std::string text = text_in(type, "size") + " bytes";
  if (!type.contains("used")) return text;
  for (std::size_t variant = 0; variant < type["used"].size(); ++variant) {
    text += (variant == 0 ? " (used by variant " : ", ") + std::to_string(variant) + ": " +
            type["used"][variant].dump();
  }
  return text + "), " + text_in(type, "tracked_size") + " with state bytes";
}

// The fields by which rows refer to the table.
std::string referring_fields(const std::vector<ModelJson> &rows, const std::string &table) {
  std::string text;
  for (const ModelJson &row : rows) {
    if (!row.contains("fields")) continue;
    for (const ModelJson &field : row["fields"]) {
      if (text_in(field, "type") != table) continue;
      text += (text.empty() ? "" : ", ") + text_in(row, "name") + "." + text_in(field, "name");
    }
  }
  return text.empty() ? "none; it is a root" : text;
}

void print_model_row(const std::vector<ModelJson> &rows, const ModelJson &row) {
  const std::string name = text_in(row, "name");
  std::printf("%s, %s: %s\n", name.c_str(), text_in(row, "kind").c_str(),
              text_in(row, "meaning").c_str());
  if (row["kind"] == "table") {
    std::printf("  rows are %s, by %s; identity %s\n  referred to by %s\n",
                text_in(row, "record").c_str(),
                text_in(row, row.contains("key_type") ? "key_type" : "key_field").c_str(),
                text_in(row, "luid").c_str(), referring_fields(rows, name).c_str());
    return;
  }
  std::printf("  %s %s; %s\n\n", text_in(row, "variants").c_str(),
              row["variants"] == 1 ? "variant" : "variants", sizes_of(row).c_str());
  if (row.contains("fields")) {
    print_model_table(
        row["fields"],
        {{"Field"}, {"Type"}, {"Form"}, {"Since", true}, {"Offset", true}, {"Meaning"}},
        {"name", "type", "form", "since", "offset", "meaning"});
  } else {
    const bool counts = row["kind"] == "enumeration";
    print_model_table(row["members"],
                      {{"Name"}, {counts ? "Value" : "Bit", true}, {"Since", true}, {"Meaning"}},
                      {"name", counts ? "value" : "bit", "since", "meaning"});
  }
}

int tell_model(const std::string &asked, bool json) {
  std::vector<ModelJson> rows = model_rows();
  std::vector<ModelJson> chosen = rows;
  if (!asked.empty()) {
    std::erase_if(chosen, [&](const ModelJson &row) { return row["name"] != asked; });
    if (chosen.empty()) {
      throw UsageError("model", "TYPE", "\"" + asked + "\"",
                       "a type or a table; the nearest are " + nearest_names(rows, asked));
    }
  }
  if (json) {
    for (const ModelJson &row : chosen) std::printf("%s\n", row.dump().c_str());
  } else if (asked.empty()) {
    print_model_table(rows, {{"Name"}, {"Kind"}, {"Meaning"}}, {"name", "kind", "meaning"});
  } else {
    print_model_row(rows, chosen.front());
  }
  return 0;
}

Run set_up_model(CLI::App &app) {
  struct Options {
    std::string type;
    bool json = false;
  };
  const auto options = std::make_shared<Options>();
  app.add_option("TYPE", options->type,
                 "A type or a table, such as ospf_area or tbl_ospf_area; all without it");
  app.add_flag("--json", options->json, "One JSON object a line");
  return [options](ospf_tables::Session *) { return tell_model(options->type, options->json); };
}

constexpr char model_description[] =
    R"(Tells what the model has: of a structure its fields with their types, the
variant from which on each is there, where it lies and what it means; of an
enumeration or a flag set its members; of a table its rows, its key and the
fields that refer to it.

A line of --json has the keys kind, name and meaning, and behind them what
docs/model.json has of the type or table.
)";

constexpr char model_example[] = R"($ ospf-harbor model ospf_nbr_stat
ospf_nbr_stat, structure: Counters of a neighbour.
  1 variant; 32 bytes (used by variant 0: 20), 34 with state bytes

  Field             Type      Form    Since  Offset  Meaning
  nbr_event_count   uint32_t  scalar      0      12  Number of neighbour events.
  nbr_retrans_qlen  uint32_t  scalar      0      16  Length of the retransmission queue.
)";

}  // namespace

extern const Command model_command;
const Command model_command{"model",
                            "Print the types and tables of the model",
                            Needs::nothing,
                            set_up_model,
                            Stands::everywhere,
                            false,
                            model_description,
                            model_example};

}  // namespace tool
