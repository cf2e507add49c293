#include "foundation/Globals.h"

#include <ini.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <locale>
#include <sstream>
#include <utility>

#include "foundation/ContinueOnError.h"
#include "foundation/HostServices.h"
#include "foundation/Numbers.h"
#include "foundation/Text.h"

namespace kolvane::Globals {

thread_local std::string IniFilePath;
thread_local bool CpSisdRequired = false;
thread_local std::string DecimalSeparator = ".";
thread_local std::string AlternateSeparator = ",";
thread_local bool NeedSaveFlag = false;
thread_local bool DisplayIncompatibleFlag = false;
thread_local std::shared_ptr<pugi::xml_document> SnvtCatalogDocument;
thread_local std::shared_ptr<pugi::xml_document> ProfileDocument;

namespace {

thread_local uint64_t catalog_generation = 0;

constexpr size_t kMaxIniValue = 4095;
constexpr char kNotFound[] = "Not Found";

// inih finds sections and name/value lines; the value itself is taken from the raw line, because
// inih trims it, cuts ";" comments, splits at ":" too and keeps quotes, none of which the
// settings file rules do.
struct IniSearch {
  std::ifstream* in = nullptr;
  std::string raw_line;  // the physical line inih is parsing
  std::string section;
  std::string key;
  bool found = false;
  std::string value;
};

// Names are matched without their surrounding blanks and tabs.
std::string_view TrimSpace(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  return text;
}

char* ReadLine(char* buffer, int size, void* stream) {
  auto* search = static_cast<IniSearch*>(stream);
  if (!std::getline(*search->in, search->raw_line)) return nullptr;
  if (!search->raw_line.empty() && search->raw_line.back() == '\r') search->raw_line.pop_back();
  // inih's line buffer is small; the rest of a long line is read from raw_line.
  size_t n = std::min(search->raw_line.size(), static_cast<size_t>(size - 2));
  std::memcpy(buffer, search->raw_line.data(), n);
  buffer[n] = '\n';
  buffer[n + 1] = '\0';
  return buffer;
}

int OnNameValue(void* user, const char* section, const char* /*name*/, const char* /*value*/) {
  auto* search = static_cast<IniSearch*>(user);
  if (search->found || !EqualsNoCase(TrimSpace(section), search->section)) return 1;
  const std::string& line = search->raw_line;
  size_t equals = line.find('=');
  if (equals == std::string::npos) return 1;
  if (!EqualsNoCase(TrimSpace(std::string_view(line).substr(0, equals)), search->key)) return 1;
  std::string value = line.substr(equals + 1);
  // A value in matching quotes is read without them.
  if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
      value.back() == value.front()) {
    value = value.substr(1, value.size() - 2);
  }
  if (value.size() > kMaxIniValue) value.resize(kMaxIniValue);
  search->value = std::move(value);
  search->found = true;
  return 1;
}

std::string ReadPrivateProfileString(const std::string& file, const std::string& section,
                                     const std::string& key, const std::string& fallback) {
  std::ifstream in(file, std::ios::binary);
  if (!in) return fallback;
  IniSearch search;
  search.in = &in;
  search.section = section;
  search.key = key;
  ini_parse_stream(ReadLine, &search, OnNameValue, &search);
  return search.found ? search.value : fallback;
}

}  // namespace

void SetSnvtCatalogDocument(std::shared_ptr<pugi::xml_document> document) {
  SnvtCatalogDocument = std::move(document);
  ++catalog_generation;
}

uint64_t SnvtCatalogGeneration() { return catalog_generation; }

std::string GetIniValue(const std::string& file, const std::string& section,
                        const std::string& key) {
  std::string value = ReadPrivateProfileString(file, section, key, kNotFound);
  if (value == kNotFound) return "";
  size_t slash = value.find('/');
  if (slash != std::string::npos) return std::string(TrimBlanks(value.substr(0, slash)));
  return value;
}

std::string GetToken(const std::string& text, int32_t index, const std::string& separator) {
  if (text.empty() || separator.empty() || index < 0) return "";
  if (index == 0) {
    size_t hit = text.find(separator);
    return hit == std::string::npos ? "" : text.substr(0, hit);
  }
  size_t hit = std::string::npos;
  size_t from = 0;
  for (int32_t n = 0; n < index; ++n) {
    hit = text.find(separator, from);
    if (hit == std::string::npos) return "";
    from = hit + 1;
  }
  size_t end = text.find(separator, hit + 1);
  if (end == std::string::npos) end = text.size();
  return text.substr(hit + 1, end - hit - 1);
}

std::string ByteToHex(int32_t& value) {
  if (value > 255) value = 255;
  char digits[9];
  std::snprintf(digits, sizeof digits, "%X", static_cast<uint32_t>(value));
  std::string hex = digits;
  if (hex.size() >= 3) return hex.substr(hex.size() - 2);
  if (hex.size() == 1) return "0" + hex;
  return hex;
}

char DecimalPoint() { return DecimalSeparator.empty() ? '.' : DecimalSeparator[0]; }

void DetectDecimalSeparator() {
  std::ostringstream formatted;
  try {
    formatted.imbue(std::locale(""));
  } catch (const std::runtime_error&) {
    // An unknown locale in the environment: the classic one applies.
  }
  formatted << 0.5f;
  if (formatted.str().find(',') != std::string::npos) {
    DecimalSeparator = ",";
    AlternateSeparator = ".";
  } else {
    DecimalSeparator = ".";
    AlternateSeparator = ",";
  }
}

void ReadSettings() {
  IniFilePath = ComponentFolder() + "/profile.ini";
  CpSisdRequired = false;
  ContinueOnError([] {
    CpSisdRequired = LeadingNumber(GetIniValue(IniFilePath, "Globals", "CP_SISD_Required")) != 0;
  });
}

}  // namespace kolvane::Globals
