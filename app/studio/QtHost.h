#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Kolvane.h"

namespace kolvane::studio {

// Installs the studio as the library's host while alive: Qt message boxes, the busy cursor for
// the hourglass pointer, yielding to Qt's event loop, and the Qt form host. The previous
// handlers come back on destruction.
class QtHost {
 public:
  QtHost();
  ~QtHost();
  QtHost(const QtHost&) = delete;
  QtHost& operator=(const QtHost&) = delete;

 private:
  MessageBoxHandler previous_box_;
  PointerHandler previous_pointer_;
  YieldHandler previous_yield_;
  std::shared_ptr<FormHost> previous_forms_;
};

// How many message boxes the studio has shown; a handler that showed one has spoken.
int MessageBoxesShown();

// Runs step and says what it raised ("Error 13: ..."); empty when it raised nothing.
std::string FailureOf(const std::function<void()>& step);

// Runs step; an error it raises is shown in a message box titled title over parent instead of
// escaping into Qt's event loop. False after an error.
bool RunGuarded(const std::string& title, const std::function<void()>& step);

// Runs step on a thread of its own, which has the library's per-thread state to itself, while
// this thread waits under the busy cursor with the host's handlers swapped for ones any thread
// may call: message boxes collected into messages, no yielding, no forms. What step raised, or
// empty.
std::string RunOnOwnThread(const std::function<void()>& step, std::vector<std::string>& messages);

// Collects the library's messages instead of showing them while alive (loading reports every
// assumed default; the studio lists them in its message pane).
class CollectedMessages {
 public:
  CollectedMessages();
  ~CollectedMessages();
  CollectedMessages(const CollectedMessages&) = delete;
  CollectedMessages& operator=(const CollectedMessages&) = delete;

  // "Title: text" lines in the order they came.
  const std::vector<std::string>& lines() const { return *lines_; }

 private:
  std::shared_ptr<std::vector<std::string>> lines_ = std::make_shared<std::vector<std::string>>();
  MessageBoxHandler previous_;
};

}  // namespace kolvane::studio
