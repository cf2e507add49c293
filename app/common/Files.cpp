#include "Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "XmlFile.h"

namespace kolvane::app {

namespace {

std::string ExecutableFolder() {
  std::error_code ec;
  const auto exe = std::filesystem::read_symlink("/proc/self/exe", ec);
  return ec ? std::string() : exe.parent_path().string();
}

}  // namespace

std::string BundledExample(const std::string& file_name) {
  const std::filesystem::path installed =
      std::filesystem::path(ExecutableFolder()) / ".." / "share" / "kolvane" / file_name;
  std::error_code ec;
  if (std::filesystem::is_regular_file(installed, ec)) return installed.lexically_normal();
  return std::string(KOLVANE_SOURCE_EXAMPLES) + "/" + file_name;
}

std::string DocumentPath(const std::string& path, const std::string& file_name) {
  return path.empty() ? BundledExample(file_name) : path;
}

bool ReadTextFile(const std::string& path, std::string& text, std::string& error) {
  std::error_code ec;
  const auto status = std::filesystem::status(path, ec);
  if (ec || !std::filesystem::exists(status)) {
    error = path + ": no such file";
    return false;
  }
  if (std::filesystem::is_directory(status)) {
    error = path + ": is a directory, not a file";
    return false;
  }
  const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) {
    error = path + ": cannot open file (" + std::strerror(errno) + ")";
    return false;
  }
  text.clear();
  char buffer[65536];
  for (;;) {
    const ssize_t n = read(fd, buffer, sizeof buffer);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) {
      error = path + ": cannot read (" + std::strerror(errno) + ")";
      close(fd);
      return false;
    }
    if (n == 0) break;
    text.append(buffer, static_cast<size_t>(n));
  }
  close(fd);
  return true;
}

std::shared_ptr<pugi::xml_document> ReadDocument(const std::string& path,
                                                 const std::string& file_name,
                                                 const std::string& root, std::string& error) {
  auto document = std::make_shared<pugi::xml_document>();
  const XmlLoadResult loaded = LoadXmlFile(DocumentPath(path, file_name), *document, root);
  if (loaded) return document;
  error = loaded.description();
  return nullptr;
}

}  // namespace kolvane::app
