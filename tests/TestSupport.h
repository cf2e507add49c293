#pragma once

// Fixture helpers shared by the unit tests.

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <locale>
#include <memory>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <pugixml.hpp>

#include "foundation/Error.h"
#include "foundation/Globals.h"
#include "foundation/HostServices.h"

namespace kolvane::test {

// The error number f raises: 0 when it runs through, -1 for an exception that is not an Error.
template <class F>
int32_t ErrorNumberOf(F&& f) {
  try {
    f();
    return 0;
  } catch (const Error& e) {
    return e.number();
  } catch (...) {
    return -1;
  }
}

// True when the decimal-comma locale the locale tests need exists.
inline bool HasDecimalCommaLocale() {
  try {
    std::locale locale("de_DE.UTF-8");
    return true;
  } catch (const std::runtime_error&) {
    return false;
  }
}
inline constexpr char kMissingLocale[] =
    "locale de_DE.UTF-8 is missing: run scripts/setup.sh to generate it";

// Makes an XML text (or file) the type catalogue; the catalogue is dropped again on destruction.
class ScopedCatalogue {
 public:
  explicit ScopedCatalogue(const char* xml) { Use(document_->load_string(xml)); }
  static ScopedCatalogue FromFile(const std::string& path) { return ScopedCatalogue(path, 0); }
  ~ScopedCatalogue() { Globals::SetSnvtCatalogDocument(nullptr); }
  ScopedCatalogue(const ScopedCatalogue&) = delete;
  ScopedCatalogue& operator=(const ScopedCatalogue&) = delete;
  pugi::xml_document& document() { return *document_; }
  // Hands the document in again (after changing it in place).
  void HandIn() { Globals::SetSnvtCatalogDocument(document_); }

 private:
  ScopedCatalogue(const std::string& path, int) { Use(document_->load_file(path.c_str())); }
  void Use(const pugi::xml_parse_result& result) {
    EXPECT_TRUE(result) << result.description();
    HandIn();
  }
  std::shared_ptr<pugi::xml_document> document_ = std::make_shared<pugi::xml_document>();
};

// Records every message box while alive, answering `answer`; puts the previous handler back.
class MessageBoxRecorder {
 public:
  struct Box {
    std::string text;
    int32_t style;
    std::string title;
  };
  explicit MessageBoxRecorder(int32_t answer = vbOK)
      : previous_(SetMessageBoxHandler([this, answer](const std::string& text, int32_t style,
                                                      const std::string& title) {
          boxes.push_back({text, style, title});
          return answer;
        })) {}
  ~MessageBoxRecorder() { SetMessageBoxHandler(std::move(previous_)); }
  MessageBoxRecorder(const MessageBoxRecorder&) = delete;
  MessageBoxRecorder& operator=(const MessageBoxRecorder&) = delete;

  std::vector<Box> boxes;

 private:
  MessageBoxHandler previous_;
};

// A fresh folder under the system's temporary folder, removed with everything in it.
class TempFolder {
 public:
  TempFolder() {
    std::random_device random;
    path_ = std::filesystem::temp_directory_path() /
            ("kolvane-test-" + std::to_string(getpid()) + "-" + std::to_string(random()));
    std::filesystem::create_directories(path_);
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  std::string path() const { return path_.string(); }

  // Writes content to the file name in the folder, byte for byte; returns its path.
  std::string Write(const std::string& name, const std::string& content) const {
    const std::string file = (path_ / name).string();
    std::ofstream(file, std::ios::binary) << content;
    return file;
  }

 private:
  std::filesystem::path path_;
};

// Sets an environment variable while alive, then restores (or removes) it.
class ScopedEnv {
 public:
  ScopedEnv(const char* name, const char* value) : name_(name) {
    if (const char* old = std::getenv(name)) saved_ = old;
    setenv(name, value, 1);
  }
  ~ScopedEnv() {
    if (saved_) setenv(name_.c_str(), saved_->c_str(), 1);
    else unsetenv(name_.c_str());
  }
  ScopedEnv(const ScopedEnv&) = delete;
  ScopedEnv& operator=(const ScopedEnv&) = delete;

 private:
  std::string name_;
  std::optional<std::string> saved_;
};

// Points ComponentFolder() at folder while alive.
class ScopedComponentFolder {
 public:
  explicit ScopedComponentFolder(const std::string& folder) { SetComponentFolder(folder); }
  ~ScopedComponentFolder() { SetComponentFolder(""); }
  ScopedComponentFolder(const ScopedComponentFolder&) = delete;
  ScopedComponentFolder& operator=(const ScopedComponentFolder&) = delete;
};

}  // namespace kolvane::test
