// The products: each takes the composed units or the schema and gives one text to a writer.
#pragma once

#include <string>
#include <vector>

#include "composition.hpp"
#include "writer.hpp"

namespace emit {

// Everything that carries exported functions, in the order of the public headers.
std::vector<Unit> all_units();

// Checked in: the public headers, the goldens that a reviewer reads, the list of families, and the
// model of the C++ headers.
void write_headers(Writer &writer, const std::vector<Unit> &units);
void write_goldens(Writer &writer, const std::vector<Unit> &units);
void write_cplusplus(Writer &writer);

// Checked in: the model as JSON and as a picture, and for who checks types of Python.
void write_model_json(Writer &writer);
void write_model_picture(Writer &writer);
void write_python_stubs(Writer &writer);

// For the build alone: forwarders, type records, vfts, what a table's facts hold by address, the
// version script, the sections of the library's file that are no code.
void write_forwarders(Writer &writer, const std::vector<Unit> &units);
void write_records(Writer &writer);
void write_vfts(Writer &writer);
void write_table_functions(Writer &writer);
void write_table_rows(Writer &writer);
void write_version_script(Writer &writer, const std::vector<Unit> &units);
void write_sections(Writer &writer, const std::string &build_record);

// Hexadecimal digits as the items of a C initializer.
std::string bytes_of(std::string_view digits);

// Exported data symbols, sorted.
std::vector<std::string> data_symbols();

// The optional handlers that an application may define: name and C prototype.
struct Handler {
  std::string name;
  std::string arguments;
};
std::vector<Handler> handlers();

}  // namespace emit
