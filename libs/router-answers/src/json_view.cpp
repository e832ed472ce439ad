#include "router_answers/json_view.hpp"

#include <algorithm>

#include "router_answers/answer_file.hpp"

namespace router_answers {

using namespace ospf_tables;

namespace {

using Json = nlohmann::ordered_json;

std::string quoted(std::string text) {
  for (char &c : text) {
    if (static_cast<unsigned char>(c) < 0x20) c = ' ';
  }
  if (text.size() > 60) text = text.substr(0, 57) + "...";
  return "\"" + text + "\"";
}

std::string kind(const Json &value) {
  switch (value.type()) {
    case Json::value_t::null:
      return "null";
    case Json::value_t::object:
      return "an object";
    case Json::value_t::array:
      return "an array";
    case Json::value_t::string:
      return "the text " + quoted(value.get<std::string>());
    default:
      return value.dump();
  }
}

// The line and column of an offset.
std::string position(const std::string &text, std::size_t offset) {
  offset = std::min(offset, text.size());
  const auto begin = text.begin();
  const auto at = begin + static_cast<std::ptrdiff_t>(offset);
  const auto line = 1 + std::count(begin, at, '\n');
  const std::size_t start = text.rfind('\n', offset == 0 ? 0 : offset - 1);
  const std::size_t column =
      start == std::string::npos || start >= offset ? offset + 1 : offset - start;
  return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

}  // namespace

JsonView read_json(const std::string &path, PassedOver &passed_over) {
  const std::string text = read_answer(path);
  try {
    return JsonView(std::make_shared<const Json>(Json::parse(text)), path, passed_over);
  } catch (const Json::parse_error &failure) {
    const std::size_t offset = failure.byte == 0 ? 0 : failure.byte - 1;
    const std::string found =
        offset >= text.size() ? "the end of the file" : quoted(text.substr(offset, 12));
    throw InputError(path, position(text, offset), found, "JSON");
  } catch (const Json::out_of_range &failure) {
    // The parser quotes a number that is larger than any that it can hold.
    const std::string words = failure.what();
    const std::size_t quote = std::min(words.find('\''), words.size() - 1);
    const std::string number = words.substr(quote + 1, words.rfind('\'') - quote - 1);
    throw InputError(path, position(text, text.find(number)), quoted(number),
                     "a number of a usual size");
  }
}

JsonView JsonView::member(const std::string &key, const char *expected) const {
  if (!value_->is_object()) fail("an object");
  const auto found = value_->find(key);
  const std::string place = place_ + "/" + key;
  if (found == value_->end()) throw InputError(file_, place, "nothing", expected);
  return JsonView(*this, *found, place);
}

bool JsonView::has(const std::string &key) const {
  return value_->is_object() && value_->contains(key);
}

std::vector<std::pair<std::string, JsonView>> JsonView::members(const char *expected) const {
  if (!value_->is_object()) fail(expected);
  std::vector<std::pair<std::string, JsonView>> result;
  for (const auto &[key, value] : value_->items()) {
    result.emplace_back(key, JsonView(*this, value, place_ + "/" + key));
  }
  return result;
}

std::vector<JsonView> JsonView::elements(const char *expected) const {
  if (!value_->is_array()) fail(expected);
  std::vector<JsonView> result;
  for (std::size_t at = 0; at < value_->size(); ++at) {
    result.push_back(JsonView(*this, (*value_)[at], place_ + "/" + std::to_string(at)));
  }
  return result;
}

std::string JsonView::text(const char *expected) const {
  if (!value_->is_string()) fail(expected);
  return value_->get<std::string>();
}

bool JsonView::boolean(const char *expected) const {
  if (!value_->is_boolean()) fail(expected);
  return value_->get<bool>();
}

std::uint64_t JsonView::number(std::uint64_t highest, const char *expected) const {
  if (!value_->is_number_unsigned()) fail(expected);
  const auto number = value_->get<std::uint64_t>();
  if (number > highest) fail(std::string(expected) + " up to " + std::to_string(highest));
  return number;
}

void JsonView::fail(const std::string &expected) const {
  throw InputError(file_, place_.empty() ? "/" : place_, found(), expected);
}

std::string JsonView::found() const { return kind(*value_); }

void JsonView::pass_over_all_but(const std::vector<std::string> &known) const {
  for (const auto &[key, value] : value_->items()) {
    if (std::find(known.begin(), known.end(), key) != known.end()) continue;
    ++passed_over_->values;
    passed_over_->keys.insert(key);
  }
}

}  // namespace router_answers
