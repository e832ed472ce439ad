#include "support/stated_forms.hpp"

#include <array>

namespace messages {

namespace {

constexpr std::array<StatedForm, 36> type_forms{{
    {"Corrupted KELP Handle", fatal, 1339},
    {"The object is not state tracked", error, 714},
    {"The object is non state tracked", error, 261},
    {"varinfo is NULL", fatal, 122},
    {"variant %u requested only %u variants present", information, 122},
    {"<type> destroy: Failed to remove oid mapping for object. Error %s", error, 104},
    {"<type> destroy: Failed to get oid references from object. Error %s", error, 67},
    {"<type> destroy: Failed to decrement ref count of oid %p. Error %s", error, 67},
    {"Error already present in call to get object oid count", error, 61},
    {"Invalid object passed in to get object oid count", error, 61},
    {"Error present in call to get table references from object", error, 61},
    {"Cannot get table references. Invalid object passed on", error, 61},
    {"tinfo is null or corrupted", fatal, 61},
    {"offset_jump read_len %d offset_jump_base %d _kelp_variant_jump %d", information, 56},
    {"error in <type> create: %s", error, 52},
    {"sttr_base can not be NULL in NESTED case. Please check the parent object and provide the "
     "correct state tracking base pointer",
     error, 52},
    {"Invalid object pointer passed in to set instance flag", error, 52},
    {"<type> destroy: Object has references and will be cleaned up when all of them are released",
     information, 52},
    {"<type> destroy: Successfully removed OID mapping", debug, 52},
    {"KELP handle and object state tracking mis-match", fatal, 52},
    {"Failed to obtain resolve existing oid reference from object", error, 34},
    {"<type> destroy: Failed to release oid reference for <field> oid. Error %s", error, 34},
    {"<type> <field> set by ref: Failed to resolve existing oid id. Error %s", error, 34},
    {"<type> <field> set by ref: Could not get oid id mapping for object %s/%s", information, 34},
    {"<type> <field> set by ref: Failed to decrement ref count on earlier reference. Error %s",
     error, 34},
    {"<type> <field> set by ref: Cannot set reference to this object", error, 34},
    {"<type> <field> set by ref: Failed to obtain existing oid mapping of object. Error %s", error,
     34},
    {"<type> <field> set by ref: Failed to update ref count on earlier reference. Error %s", error,
     34},
    {"<type> <field> set by ref: Could not get oid mapping entry using oid id", error, 34},
    {"<type> <field> set by ref: Handle to oid failed with error code %s", error, 34},
    {"kelp_stats_inc failed %s", none, 18},
    {"error in <type> create %s", error, 9},
    {"Invalid object handle passed to set embedded flag", error, 9},
    {"Reallocating resource for <type>", error, 8},
    {"The val object is not state tracked", error, 1},
    {"type variant cached info is NULL during usage dump", error, 1},
}};

constexpr std::string_view wrong_free =
    "APPLICATION ERROR! Table <t> in SHARED DB should be freed by requesting table free by the GC. "
    "Please free the table via toc delete or mark the DB as non-shared";

constexpr std::array<StatedForm, 48> table_forms{{
    {"lumen internal error", none, 168},
    {"varinfo is NULL", none, 84},
    {"variant %u requested only %u variants present", none, 84},
    {"kelp_stats_inc failed %s", none, 84},
    {"kelp database toc find returned error: %s", none, 42},
    {"tbl_<t> table free: Failed to delete table entry from TOC. Error: %s", none, 42},
    {"Error present in call to table marshal: %s", none, 42},
    {"Object is either nested or already embedded. Cannot set such objects into the record", none,
     26},
    {"Object is either nested or already embedded in a record. Cannot set such objects into the "
     "record",
     none, 26},
    {"Failed to marshal <t> record: Field <k> is empty", none, 26},
    {"tbl_<t> insert record exists for <t> <k>", none, 21},
    {"tbl_<t> delete, record not found for <t> <k>", none, 21},
    {"tbl_<t>_delete() cannot be direclty used when the table is marked for replication", none, 21},
    {"default <record> create handler called", none, 21},
    {"default <record> modify handler called", none, 21},
    {"default <record> delete handler called", none, 21},
    {"default <record> create DM handler called", none, 21},
    {"default <record> delete DM handler called", none, 21},
    {"default <record> grouping handler called", none, 21},
    {"default <record> free handler called", none, 21},
    {"unknow key:%d", none, 21},
    {"Opening table in create mode while not holding a write lock", none, 21},
    {"Failed to open TOC. Error %s", none, 21},
    {"Failed to open toc root for database %s", none, 21},
    {"Could not find TOC root in DB %s. Lock type: RD_LOCK, Open type: %u", none, 21},
    {"Setting tbi root failed\\n", none, 21},
    {"reader cannot allocate table ID root\\n", none, 21},
    {"Failed to create mapping for <t> table", none, 21},
    {"Failed to insert %s table <t> into the TOC", none, 21},
    {"Failed to get toc root while freeing tablle. Error %s", none, 21},
    {"Failed to get TOC root while freeing table. Error %s", none, 21},
    {"Failed to perform toc delete for table <t>. Error %s", none, 21},
    {"Failed to destroy <t> table, Error %s", none, 21},
    {"tbl_<t> table free: Failed to force delete table entry from TOC. Error: %s", none, 21},
    {"tbl_<t> table free: Failed to request oid mapping destroy for table. Error %s", none, 21},
    {"tbl_<t> table free: Successfully removed OID mapping for <t>", none, 21},
    {wrong_free, none, 21},
    {"APPLICATION ERROR! KELp_REQUEST_TABLE_FREE should only be used for SHARED databases", none,
     21},
    {"tbl_<t> request destroy record failed", none, 21},
    {"Error %d deleting <t> record when destroying", none, 21},
    {"tinfo is null or corrupted", none, 21},
    {"<t> destroy: Failed to remove oid mapping for object. Error %s", none, 21},
    {"tbl_<t> delete: record count already 0!", none, 21},
    {"invalid record get flag %d", none, 21},
    {"Error present in call to %s unmarshal: %s", none, 21},
    {"Error present in call to %s pkey unmarshal: %s", none, 21},
    {"Initializing table vft for %s", none, 1},
    {"Error already set when requesting ospf_harbor_oper table vft", none, 1},
}};

constexpr std::array<BlockMessage, 65> block{{
    {0, "unknow key:%d", error},
    {1, "Opening table in create mode while not holding a write lock", fatal},
    {2, "Failed to open TOC. Error %s", error},
    {3, "Failed to open toc root for database %s", fatal},
    {4, "Could not find TOC root in DB %s. Lock type: RD_LOCK, Open type: %u", information},
    {5, "kelp database toc find returned error: %s", error},
    {6, "reader cannot allocate table ID root\\n", error},
    {7, "Setting tbi root failed\\n", error},
    {8, "kelp database toc find returned error: %s", error},
    {9, "lumen internal error", fatal},
    {10, "lumen internal error", fatal},
    {11, "lumen internal error", fatal},
    {12, "lumen internal error", fatal},
    {13, "lumen internal error", fatal},
    {14, "Failed to create mapping for <table> table", fatal},
    {15, "Failed to insert %s table <table> into the TOC", error},
    {16, "varinfo is NULL", fatal},
    {17, "variant %u requested only %u variants present", information},
    {18, "kelp_stats_inc failed %s", none},
    {19, "Failed to get toc root while freeing tablle. Error %s", error},
    {20, "<table> table free: Failed to force delete table entry from TOC. Error: %s", error},
    {21,
     "APPLICATION ERROR! Table <table> in SHARED DB should be freed by requesting table free by "
     "the GC. Please free the table via toc delete or mark the DB as non-shared",
     debug},
    {22, "<table> table free: Failed to delete table entry from TOC. Error: %s", error},
    {23, "<table> table free: Failed to delete table entry from TOC. Error: %s", error},
    {24, "<table> table free: Failed to request oid mapping destroy for table. Error %s", error},
    {25, "<table> table free: Successfully removed OID mapping for <table>", debug},
    {26, "lumen internal error", fatal},
    {27, "lumen internal error", fatal},
    {28, "lumen internal error", fatal},
    {29, "varinfo is NULL", fatal},
    {30, "variant %u requested only %u variants present", information},
    {31, "kelp_stats_inc failed %s", none},
    {32, "APPLICATION ERROR! KELp_REQUEST_TABLE_FREE should only be used for SHARED databases",
     error},
    {33, "Failed to get TOC root while freeing table. Error %s", error},
    {34, "Failed to perform toc delete for table <table>. Error %s", error},
    {35, "Failed to destroy <table> table, Error %s", error},
    {36, "default ospf_harbor_oper_<table>_record create handler called", information},
    {37, "default ospf_harbor_oper_<table>_record modify handler called", information},
    {38, "default ospf_harbor_oper_<table>_record delete handler called", information},
    {39, "default ospf_harbor_oper_<table>_record create DM handler called", information},
    {40, "default ospf_harbor_oper_<table>_record delete DM handler called", information},
    {41, "default ospf_harbor_oper_<table>_record grouping handler called", information},
    {42, "default ospf_harbor_oper_<table>_record free handler called", information},
    {43, "varinfo is NULL", fatal},
    {44, "variant %u requested only %u variants present", information},
    {45, "kelp_stats_inc failed %s", none},
    {46, "<table> request destroy record failed", error},
    {47, "Error %d deleting <table> record when destroying", error},
    {48, "varinfo is NULL", fatal},
    {49, "variant %u requested only %u variants present", information},
    {50, "kelp_stats_inc failed %s", none},
    {51, "tinfo is null or corrupted", fatal},
    {52, "<table> destroy: Failed to remove oid mapping for object. Error %s", error},
    {53, "Object is either nested or already embedded. Cannot set such objects into the record",
     error},
    {54,
     "Object is either nested or already embedded in a record. Cannot set such objects into the "
     "record",
     error},
    {55, "<table> insert record exists for <key>", error},
    {56, "<table>_delete() cannot be direclty used when the table is marked for replication",
     error},
    {57, "<table> delete, record not found for <key>", error},
    {58, "<table> delete: record count already 0!", error},
    {59, "invalid record get flag %d", error},
    {60, "Error present in call to table marshal: %s", debug},
    {61, "Failed to marshal <table> record: Field <object> is empty", error},
    {62, "Error present in call to table marshal: %s", debug},
    {63, "Error present in call to %s unmarshal: %s", debug},
    {64, "Error present in call to %s pkey unmarshal: %s", debug},
}};

bool is_name_character(char c) {
  return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
}

}  // namespace

std::span<const StatedForm> stated_type_forms() { return type_forms; }
std::span<const StatedForm> stated_table_forms() { return table_forms; }
std::span<const BlockMessage> stated_block() { return block; }

std::string signature_of(std::string_view text) {
  std::string digits;
  for (std::size_t at = text.find('%'); at != std::string_view::npos; at = text.find('%', at + 1)) {
    switch (text[at + 1]) {
      case 's':
        digits += '1';
        break;
      case 'p':
        digits += '5';
        break;
      default:
        digits += '4';
        break;
    }
  }
  return digits.empty() ? "0" : digits;
}

FormPattern::FormPattern(std::string_view form) {
  std::size_t from = 0;
  for (std::size_t open = form.find('<'); open != std::string_view::npos;
       open = form.find('<', from)) {
    const std::size_t close = form.find('>', open);
    pieces_.emplace_back(form.substr(from, open - from));
    may_be_empty_.push_back(form.substr(open, close + 1 - open) == "<k>");
    from = close + 1;
  }
  pieces_.emplace_back(form.substr(from));
}

// Names hold no character that begins the piece behind them, so the first fit is the only one.
bool FormPattern::matches(std::string_view text) const {
  for (std::size_t piece = 0; piece < pieces_.size(); ++piece) {
    if (text.substr(0, pieces_[piece].size()) != pieces_[piece]) return false;
    text.remove_prefix(pieces_[piece].size());
    if (piece == may_be_empty_.size()) break;
    std::size_t length = 0;
    const std::string &next = pieces_[piece + 1];
    while (length < text.size() && is_name_character(text[length]) &&
           (next.empty() || text.substr(length, next.size()) != next)) {
      ++length;
    }
    if (length == 0 && !may_be_empty_[piece]) return false;
    text.remove_prefix(length);
  }
  return text.empty();
}

std::string filled(std::string text, std::string_view placeholder, std::string_view name) {
  for (std::size_t at = text.find(placeholder); at != std::string::npos;
       at = text.find(placeholder, at + name.size())) {
    text.replace(at, placeholder.size(), name);
  }
  return text;
}

}  // namespace messages
