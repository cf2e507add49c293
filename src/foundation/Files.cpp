#include "foundation/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>

namespace kolvane {

namespace {

// The temporary file a save is writing, removed when a signal ends the program meanwhile.
char g_temporary[4096];

extern "C" void RemoveTemporaryAndDie(int signal_number) {
  if (g_temporary[0] != '\0') unlink(g_temporary);
  std::signal(signal_number, SIG_DFL);
  std::raise(signal_number);
}

// Installs the handler for the duration of a save, then restores what was there.
class TemporaryGuard {
 public:
  explicit TemporaryGuard(const std::string& temporary) {
    std::snprintf(g_temporary, sizeof g_temporary, "%s", temporary.c_str());
    struct sigaction action {};
    action.sa_handler = RemoveTemporaryAndDie;
    sigemptyset(&action.sa_mask);
    for (size_t i = 0; i < kSignals.size(); ++i) sigaction(kSignals[i], &action, &previous_[i]);
  }
  ~TemporaryGuard() {
    for (size_t i = 0; i < kSignals.size(); ++i) sigaction(kSignals[i], &previous_[i], nullptr);
    g_temporary[0] = '\0';
  }
  TemporaryGuard(const TemporaryGuard&) = delete;
  TemporaryGuard& operator=(const TemporaryGuard&) = delete;

 private:
  static constexpr std::array<int, 3> kSignals = {SIGINT, SIGTERM, SIGHUP};
  std::array<struct sigaction, 3> previous_{};
};

bool WriteAll(int fd, const std::string& text) {
  for (size_t done = 0; done < text.size();) {
    const ssize_t n = write(fd, text.data() + done, text.size() - done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    done += static_cast<size_t>(n);
  }
  return true;
}

}  // namespace

bool WriteFileAtomically(const std::string& path, const std::string& text, std::string& error) {
  const std::filesystem::path target(path);
  struct stat existing {};
  const bool exists = lstat(path.c_str(), &existing) == 0;
  struct stat followed {};
  const bool reaches = stat(path.c_str(), &followed) == 0;
  if (reaches && S_ISDIR(followed.st_mode)) {
    error = path + ": is a directory";
    return false;
  }
  if (reaches && !S_ISREG(followed.st_mode)) {
    // A device or a pipe (/dev/stdout is a link to one): written through, never replaced.
    const int fd = open(path.c_str(), O_WRONLY | O_CLOEXEC);
    const bool written = fd >= 0 && WriteAll(fd, text);
    const int saved_errno = errno;
    if (fd >= 0) close(fd);
    if (!written) error = path + ": cannot write (" + std::strerror(saved_errno) + ")";
    return written;
  }
  const std::filesystem::path folder =
      target.has_parent_path() ? target.parent_path() : std::filesystem::path(".");
  std::string temporary = (folder / ("." + target.filename().string() + ".XXXXXX")).string();
  const int fd = mkstemp(temporary.data());
  if (fd < 0) {
    error = path + ": cannot write (" + std::strerror(errno) + ")";
    return false;
  }
  const TemporaryGuard guard(temporary);
  // mkstemp makes the file private: give it the old file's permissions, or a new file's.
  const mode_t mask = umask(0);
  umask(mask);
  const mode_t mode = exists && S_ISREG(existing.st_mode) ? (existing.st_mode & 07777) : (0666 & ~mask);
  bool written = fchmod(fd, mode) == 0 && WriteAll(fd, text);
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

}  // namespace kolvane
