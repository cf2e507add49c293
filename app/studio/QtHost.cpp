#include "QtHost.h"

#include <thread>

#include <QApplication>
#include <QEventLoop>
#include <QGuiApplication>
#include <QMessageBox>

#include "QtFormHost.h"

namespace kolvane::studio {

namespace {

constexpr int16_t kHourglass = 11;
constexpr int32_t kIconMask = 0x70;
constexpr int32_t vbQuestion = 32;

QMessageBox::Icon IconOf(int32_t style) {
  switch (style & kIconMask) {
    case vbCritical:
      return QMessageBox::Critical;
    case vbQuestion:
      return QMessageBox::Question;
    case vbExclamation:
      return QMessageBox::Warning;
    case vbInformation:
      return QMessageBox::Information;
    default:
      return QMessageBox::NoIcon;
  }
}

int g_boxes_shown = 0;

// The library shows only OK boxes.
int32_t ShowMessageBox(const std::string& text, int32_t style, const std::string& title) {
  ++g_boxes_shown;
  QMessageBox box(IconOf(style), QString::fromStdString(title.empty() ? "Kolvane" : title),
                  QString::fromStdString(text), QMessageBox::Ok, QApplication::activeWindow());
  box.exec();
  return vbOK;
}

void ShowPointer(int16_t pointer) {
  static bool busy = false;
  if (pointer == kHourglass && !busy) {
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    busy = true;
  } else if (pointer != kHourglass && busy) {
    QGuiApplication::restoreOverrideCursor();
    busy = false;
  }
}

}  // namespace

int MessageBoxesShown() { return g_boxes_shown; }

QtHost::QtHost()
    : previous_box_(SetMessageBoxHandler(ShowMessageBox)),
      previous_pointer_(SetPointerHandler(ShowPointer)),
      // Input waits until the library is done: a click must not reach a half-loaded profile.
      previous_yield_(SetYieldHandler(
          [] { QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents); })),
      previous_forms_(SetFormHost(std::make_shared<QtFormHost>())) {}

QtHost::~QtHost() {
  ShowPointer(0);
  SetFormHost(std::move(previous_forms_));
  SetYieldHandler(std::move(previous_yield_));
  SetPointerHandler(std::move(previous_pointer_));
  SetMessageBoxHandler(std::move(previous_box_));
}

std::string FailureOf(const std::function<void()>& step) {
  try {
    step();
    return "";
  } catch (const Error& e) {
    return "Error " + std::to_string(e.number()) + ": " + e.what();
  } catch (const std::exception& e) {
    return e.what();
  } catch (...) {
    return "an unknown error";
  }
}

bool RunGuarded(const std::string& title, const std::function<void()>& step) {
  const std::string failure = FailureOf(step);
  if (failure.empty()) return true;
  ShowMessageBox(failure, vbCritical, title);
  return false;
}

namespace {

// The host's handlers swapped for ones any thread may call, and put back on destruction.
class ThreadSafeHandlers {
 public:
  ThreadSafeHandlers()
      : yield_(SetYieldHandler({})), pointer_(SetPointerHandler({})), forms_(SetFormHost(nullptr)) {
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
  }
  ~ThreadSafeHandlers() {
    QGuiApplication::restoreOverrideCursor();
    SetFormHost(std::move(forms_));
    SetPointerHandler(std::move(pointer_));
    SetYieldHandler(std::move(yield_));
  }
  ThreadSafeHandlers(const ThreadSafeHandlers&) = delete;
  ThreadSafeHandlers& operator=(const ThreadSafeHandlers&) = delete;

 private:
  YieldHandler yield_;
  PointerHandler pointer_;
  std::shared_ptr<FormHost> forms_;
};

}  // namespace

std::string RunOnOwnThread(const std::function<void()>& step, std::vector<std::string>& messages) {
  std::string failure;
  std::string started;  // why no thread ran
  CollectedMessages collected;
  {
    ThreadSafeHandlers handlers;
    started = FailureOf([&] {
      std::thread worker([&] { failure = FailureOf(step); });
      worker.join();
    });
  }
  messages = collected.lines();
  return started.empty() ? failure : started;
}

CollectedMessages::CollectedMessages()
    : previous_(SetMessageBoxHandler(
          [lines = lines_](const std::string& text, int32_t, const std::string& title) {
            lines->push_back((title.empty() ? "Kolvane" : title) + ": " + text);
            return vbOK;
          })) {}

CollectedMessages::~CollectedMessages() { SetMessageBoxHandler(std::move(previous_)); }

}  // namespace kolvane::studio
