#pragma once

// Fixture helpers shared by the unit tests.

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include <pugixml.hpp>

#include "foundation/Error.h"
#include "foundation/Globals.h"
#include "foundation/HostServices.h"
#include "host/BuiltInComponents.h"
#include "types/CSNVTType.h"

namespace kolvane::test {

// The error number f raises: 0 when it runs through, -1 for an exception that is not an Error.
template <class F>
int32_t ErrorNumberOf(F&& f) {
  try {
    f();
  } catch (const Error& e) {
    return e.number();
  } catch (...) {
    return -1;
  }
  return 0;
}

// Why a test that needs the decimal-comma locale fails without it.
inline constexpr char kMissingLocale[] = "locale de_DE.UTF-8 is missing: run scripts/setup.sh";

// Makes an XML text (or the file at that path), comments kept, the type catalogue while alive.
struct ScopedCatalogue {
  explicit ScopedCatalogue(const std::string& xml, bool is_path = false) {
    const unsigned options = pugi::parse_default | pugi::parse_comments;
    const auto result = is_path ? document->load_file(xml.c_str(), options)
                                : document->load_string(xml.c_str(), options);
    EXPECT_TRUE(result) << result.description();
    HandIn();
  }
  ~ScopedCatalogue() { Globals::SetSnvtCatalogDocument(nullptr); }
  void HandIn() { Globals::SetSnvtCatalogDocument(document); }
  const std::shared_ptr<pugi::xml_document> document = std::make_shared<pugi::xml_document>();
};

// A type loaded from the catalogue.
inline CSNVTType LoadedType(const std::string& identifier) {
  CSNVTType type;
  type.Load(identifier);
  return type;
}

// Records the message boxes (text, style, title) shown while alive, answering `answer`.
struct MessageBoxRecorder {
  using Box = std::tuple<std::string, int32_t, std::string>;
  explicit MessageBoxRecorder(int32_t answer = vbOK)
      : previous(SetMessageBoxHandler([this, answer](auto& text, int32_t style, auto& title) {
          boxes.emplace_back(text, style, title);
          return answer;
        })) {}
  ~MessageBoxRecorder() { SetMessageBoxHandler(std::move(previous)); }
  std::vector<Box> boxes;
  MessageBoxHandler previous;
};

// A fresh folder under the temporary folder, removed with its contents.
struct TempFolder {
  TempFolder() { std::filesystem::create_directories(path); }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }
  // Writes content byte for byte to the file name in the folder; returns its path.
  std::string Write(const std::string& name, const std::string& content) const {
    std::ofstream(path + "/" + name, std::ios::binary) << content;
    return path + "/" + name;
  }
  const std::string path =
      std::filesystem::temp_directory_path() /
      ("kolvane-test-" + std::to_string(getpid()) + "-" + std::to_string(std::random_device()()));
};

// Sets an environment variable while alive.
struct ScopedEnv {
  ScopedEnv(const char* name, const char* value) : name(name) {
    if (const char* old = std::getenv(name)) saved = old;
    setenv(name, value, 1);
  }
  ~ScopedEnv() { saved ? setenv(name.c_str(), saved->c_str(), 1) : unsetenv(name.c_str()); }
  std::string name;
  std::optional<std::string> saved;
};

// Makes separator the user's decimal separator (and the other one the alternate) while alive.
struct ScopedDecimalSeparator {
  explicit ScopedDecimalSeparator(const std::string& separator)
      : decimal(Globals::DecimalSeparator), alternate(Globals::AlternateSeparator) {
    Globals::DecimalSeparator = separator;
    Globals::AlternateSeparator = separator == "," ? "." : ",";
  }
  ~ScopedDecimalSeparator() {
    Globals::DecimalSeparator = decimal;
    Globals::AlternateSeparator = alternate;
  }
  std::string decimal, alternate;
};

// Registers factory under progId (an empty one unregisters it) while alive; afterwards the
// built-in component of that ProgID is registered again, or none when it has no built-in.
struct ScopedComponent {
  ScopedComponent(std::string id, ClassFactory factory) : progId(std::move(id)) {
    RegisterClass(progId, std::move(factory));
  }
  ~ScopedComponent() {
    ClassFactory built_in;
    for (auto& [id, factory] : internal::BuiltInComponents()) {
      if (id == progId) built_in = factory;
    }
    RegisterClass(progId, built_in);
  }
  std::string progId;
};

// Counts the yields to the host while alive.
struct YieldCounter {
  YieldCounter() : previous(SetYieldHandler([this] { ++count; })) {}
  ~YieldCounter() { SetYieldHandler(std::move(previous)); }
  int count = 0;
  YieldHandler previous;
};

}  // namespace kolvane::test
