#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "Csv.h"

namespace kolvane::cli {

// Builds a JSON document with nlohmann's library (members in the order written) and writes it,
// with a line break, when it goes out of scope: objects and arrays opened and closed in order.
class JsonWriter {
 public:
  explicit JsonWriter(std::ostream& out) : out_(out) {}
  ~JsonWriter() { out_ << root_.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) << '\n'; }
  JsonWriter(const JsonWriter&) = delete;
  JsonWriter& operator=(const JsonWriter&) = delete;

  JsonWriter& BeginObject() { return Open(nlohmann::ordered_json::object()); }
  JsonWriter& EndObject() { return Close(); }
  JsonWriter& BeginArray() { return Open(nlohmann::ordered_json::array()); }
  JsonWriter& EndArray() { return Close(); }
  // The name of the next member of the current object.
  JsonWriter& Key(std::string_view key) {
    key_ = std::string(key);
    return *this;
  }
  JsonWriter& String(std::string_view value) { return Put(std::string(value)); }
  JsonWriter& Number(long long value) { return Put(value); }
  JsonWriter& Bool(bool value) { return Put(value); }
  // A member with a string value.
  JsonWriter& Member(std::string_view key, std::string_view value) {
    return Key(key).String(value);
  }

 private:
  // Puts value into the open container (under the key given last), or makes it the root.
  nlohmann::ordered_json& Place(nlohmann::ordered_json value);
  JsonWriter& Put(nlohmann::ordered_json value) {
    Place(std::move(value));
    return *this;
  }
  JsonWriter& Open(nlohmann::ordered_json container) {
    open_.push_back(&Place(std::move(container)));
    return *this;
  }
  JsonWriter& Close() {
    if (!open_.empty()) open_.pop_back();
    return *this;
  }

  std::ostream& out_;
  nlohmann::ordered_json root_;
  std::vector<nlohmann::ordered_json*> open_;
  std::string key_;
};

// The rows of an "export --format json" document as records: a header record of "path",
// "value" and "unit", then one record a row, numbered from 1. False with error when the text is
// no such document.
bool ReadExportedRows(const std::string& text, std::vector<app::CsvRecord>& records, std::string& error);

}  // namespace kolvane::cli
