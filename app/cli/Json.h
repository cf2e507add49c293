#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace kolvane::cli {

// Writes JSON: objects and arrays opened and closed in order, strings escaped.
class JsonWriter {
 public:
  explicit JsonWriter(std::ostream& out) : out_(out) {}
  ~JsonWriter() { out_ << '\n'; }

  JsonWriter& BeginObject();
  JsonWriter& EndObject();
  JsonWriter& BeginArray();
  JsonWriter& EndArray();
  // The name of the next member of the current object.
  JsonWriter& Key(std::string_view key);
  JsonWriter& String(std::string_view value);
  JsonWriter& Number(long long value);
  JsonWriter& Bool(bool value);
  // A member with a string value.
  JsonWriter& Member(std::string_view key, std::string_view value) {
    return Key(key).String(value);
  }

 private:
  void Separate();

  std::ostream& out_;
  std::vector<bool> first_;  // per open container: no element written yet
  bool after_key_ = false;
};

}  // namespace kolvane::cli
