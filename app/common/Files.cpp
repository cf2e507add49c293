#include "Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
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

std::shared_ptr<pugi::xml_document> ReadDocument(const std::string& path,
                                                 const std::string& file_name,
                                                 const std::string& root, std::string& error) {
  auto document = std::make_shared<pugi::xml_document>();
  const XmlLoadResult loaded = LoadXmlFile(DocumentPath(path, file_name), *document, root);
  if (loaded) return document;
  error = loaded.description();
  return nullptr;
}

bool WriteFileAtomically(const std::string& path, const std::string& text, std::string& error) {
  const std::filesystem::path target(path);
  const std::filesystem::path folder =
      target.has_parent_path() ? target.parent_path() : std::filesystem::path(".");
  std::string temporary = (folder / ("." + target.filename().string() + ".XXXXXX")).string();
  const int fd = mkstemp(temporary.data());
  if (fd < 0) {
    error = path + ": cannot write (" + std::strerror(errno) + ")";
    return false;
  }
  // mkstemp makes the file private; give it the permissions a new file gets.
  const mode_t mask = umask(0);
  umask(mask);
  bool written = fchmod(fd, 0666 & ~mask) == 0;
  for (size_t done = 0; written && done < text.size();) {
    const ssize_t n = write(fd, text.data() + done, text.size() - done);
    if (n < 0 && errno == EINTR) continue;
    written = n > 0;
    if (written) done += static_cast<size_t>(n);
  }
  written = written && fsync(fd) == 0;
  const int saved_errno = errno;
  close(fd);
  if (!written || std::rename(temporary.c_str(), path.c_str()) != 0) {
    error = path + ": cannot write (" + std::strerror(written ? errno : saved_errno) + ")";
    std::remove(temporary.c_str());
    return false;
  }
  return true;
}

}  // namespace kolvane::app
