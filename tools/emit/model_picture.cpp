// The tree of tables as a picture: a box for each table with its key and the references that its
// rows hold, a line from each reference to the table behind it. A table stands in the column of its
// longest way from a root, and in its column by the height of those that refer to it.
#include <algorithm>
#include <map>

#include "products.hpp"

namespace emit {

namespace {

using namespace harbor::model;

constexpr int box_width = 206;
constexpr int column_step = 290;
constexpr int line_height = 17;
constexpr int box_gap = 26;
constexpr int border = 20;

struct Box {
  const Table *table;
  std::vector<const Field *> references;
  std::size_t column = 0;
  int top = 0;

  int height() const { return (2 + static_cast<int>(references.size())) * line_height + 10; }
  int left() const { return border + static_cast<int>(column) * column_step; }
};

using Boxes = std::vector<Box>;  // by TableId

Box &box_behind(Boxes &boxes, const Field &reference) {
  return boxes[static_cast<std::size_t>(reference.table)];
}

Boxes boxes_of_tables() {
  Boxes boxes;
  for (const Table *table : all_tables) {
    Box box{table, {}};
    for (const Field *field : table->record->fields) {
      if (field->kind == Kind::reference) box.references.push_back(field);
    }
    boxes.push_back(box);
  }
  // As many rounds as there are tables settle every way, since no table is below itself.
  for (std::size_t round = 0; round < boxes.size(); ++round) {
    for (const Box &box : boxes) {
      for (const Field *reference : box.references) {
        Box &below = box_behind(boxes, *reference);
        below.column = std::max(below.column, box.column + 1);
      }
    }
  }
  return boxes;
}

// The heights at which a column's boxes would like to stand: the middle of what refers to them.
std::map<const Box *, int> wished_heights(Boxes &boxes, const std::vector<Box *> &column) {
  std::map<const Box *, int> wished;
  for (const Box *box : column) {
    int sum = 0;
    int count = 0;
    for (const Box &other : boxes) {
      for (std::size_t at = 0; at < other.references.size(); ++at) {
        if (&box_behind(boxes, *other.references[at]) != box) continue;
        sum += other.top + (2 + static_cast<int>(at)) * line_height;
        ++count;
      }
    }
    wished[box] = count == 0 ? 0 : sum / count;
  }
  return wished;
}

// Places the columns from the roots on, each in the middle of the highest; gives its height.
int place_boxes(Boxes &boxes) {
  std::vector<std::vector<Box *>> columns;
  for (Box &box : boxes) {
    columns.resize(std::max(columns.size(), box.column + 1));
    columns[box.column].push_back(&box);
  }
  const auto height = [](const std::vector<Box *> &column) {
    int sum = -box_gap;
    for (const Box *box : column) sum += box->height() + box_gap;
    return sum;
  };
  int highest = 0;
  for (const auto &column : columns) highest = std::max(highest, height(column));
  for (auto &column : columns) {
    const auto wished = wished_heights(boxes, column);
    std::stable_sort(column.begin(), column.end(),
                     [&](const Box *a, const Box *b) { return wished.at(a) < wished.at(b); });
    int top = border + (highest - height(column)) / 2;
    for (Box *box : column) {
      box->top = top;
      top += box->height() + box_gap;
    }
  }
  return highest;
}

std::string pixels(int value) { return std::to_string(value); }

std::string line_to(const Box &from, std::size_t at, const Box &to) {
  const int x = from.left() + box_width;
  const int y = from.top + (2 + static_cast<int>(at)) * line_height + 10;
  const int end_x = to.left();
  const int end_y = to.top + line_height - 3;
  const int bend = (column_step - box_width) * 3 / 4;
  const bool far = to.column != from.column + 1;  // passes behind what stands in between
  return std::string(far ? "<path class=\"far\"" : "<path") + " d=\"M" + pixels(x) + " " +
         pixels(y) + "C" + pixels(x + bend) + " " + pixels(y) + " " + pixels(end_x - bend) + " " +
         pixels(end_y) + " " + pixels(end_x) + " " + pixels(end_y) +
         "\" marker-end=\"url(#end)\"/>\n";
}

std::string svg_text(int x, int y, std::string_view style, std::string_view text) {
  return "<text x=\"" + pixels(x) + "\" y=\"" + pixels(y) + "\" class=\"" + std::string(style) +
         "\">" + std::string(text) + "</text>\n";
}

std::string box_text(const Box &box) {
  const Table &table = *box.table;
  const bool composite = table.shape() == Shape::composite_key;
  std::string text = "<g><title>" + std::string(table.meaning) + "</title>\n<rect x=\"" +
                     pixels(box.left()) + "\" y=\"" + pixels(box.top) + "\" width=\"" +
                     pixels(box_width) + "\" height=\"" + pixels(box.height()) + "\" rx=\"5\"/>\n";
  const int x = box.left() + 10;
  int y = box.top + line_height;
  text += svg_text(x, y, "name", "tbl_" + std::string(table.name));
  text += svg_text(x, y += line_height, "key",
                   "by " + std::string(composite ? table.key_structure->name : table.key->name));
  for (const Field *reference : box.references) {
    text += svg_text(x, y += line_height, "reference", reference->name);
  }
  return text + "</g>\n";
}

// Colours follow the reader's choice of a light or a dark page.
constexpr std::string_view picture_style =
    "<style>\n"
    "text{font:12px ui-sans-serif,system-ui,sans-serif;fill:#1c2733}\n"
    ".name{font-weight:600}.key{fill:#5b6b7c}.reference{text-anchor:start}\n"
    "rect{fill:#f4f7fa;stroke:#7b8ea3}path{fill:none;stroke:#4a7fb5;stroke-width:1.2}"
    ".far{stroke-opacity:.5;stroke-dasharray:5 3}\n"
    "marker path{fill:#4a7fb5;stroke:none}\n"
    "@media(prefers-color-scheme:dark){text{fill:#e3e9f0}.key{fill:#9fb0c3}"
    "rect{fill:#1d2732;stroke:#5b6f85}path{stroke:#79a9da}marker path{fill:#79a9da}}\n"
    "</style>\n";

}  // namespace

void write_model_picture(Writer &writer) {
  Boxes boxes = boxes_of_tables();
  const int height = place_boxes(boxes) + 2 * border;
  int width = 0;
  std::string lines;
  std::string texts;
  for (const Box &box : boxes) {
    width = std::max(width, box.left() + box_width + border);
    for (std::size_t at = 0; at < box.references.size(); ++at) {
      lines += line_to(box, at, box_behind(boxes, *box.references[at]));
    }
    texts += box_text(box);
  }
  const std::string size = pixels(width) + " " + pixels(height);
  writer.file("docs/model.svg",
              "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " + size + "\" width=\"" +
                  pixels(width) + "\" height=\"" + pixels(height) +
                  "\" role=\"img\" aria-label=\"The tables and the references between them\">\n" +
                  std::string(picture_style) +
                  "<defs><marker id=\"end\" viewBox=\"0 0 8 8\" refX=\"8\" refY=\"4\" "
                  "markerWidth=\"7\" markerHeight=\"7\" orient=\"auto\"><path d=\"M0 0L8 4L0 8z\"/>"
                  "</marker></defs>\n" +
                  lines + texts + "</svg>\n");
}

}  // namespace emit
