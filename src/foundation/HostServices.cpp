#include "foundation/HostServices.h"

#include <dlfcn.h>

#include <filesystem>
#include <iostream>
#include <unordered_map>
#include <utility>

#include "foundation/Error.h"
#include "foundation/Text.h"
#include "host/BuiltInComponents.h"

namespace kolvane {

namespace {

int32_t DefaultMessageBox(const std::string& text, int32_t /*style*/, const std::string& title) {
  std::cerr << (title.empty() ? "Kolvane" : title) << ": " << text << '\n';
  return vbOK;
}

// Handlers are process-wide: the host installs them once, and every call arrives on its
// user-interface thread.
MessageBoxHandler& MessageBoxSlot() {
  static MessageBoxHandler handler = DefaultMessageBox;
  return handler;
}

YieldHandler& YieldSlot() {
  static YieldHandler handler;
  return handler;
}

PointerHandler& PointerSlot() {
  static PointerHandler handler;
  return handler;
}

std::unordered_map<std::string, ClassFactory>& Registry() {
  static std::unordered_map<std::string, ClassFactory> registry = [] {
    std::unordered_map<std::string, ClassFactory> built_in;
    for (auto& [prog_id, factory] : internal::BuiltInComponents()) {
      built_in[ToLower(prog_id)] = std::move(factory);
    }
    return built_in;
  }();
  return registry;
}

std::string& ComponentFolderOverride() {
  static std::string folder;
  return folder;
}

std::string LibraryFolder() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<const void*>(&LibraryFolder), &info) == 0 ||
      info.dli_fname == nullptr) {
    return std::filesystem::current_path().string();
  }
  std::error_code ec;
  std::filesystem::path file = std::filesystem::weakly_canonical(info.dli_fname, ec);
  if (ec) file = info.dli_fname;
  return file.parent_path().string();
}

}  // namespace

MessageBoxHandler SetMessageBoxHandler(MessageBoxHandler handler) {
  if (!handler) handler = DefaultMessageBox;
  return std::exchange(MessageBoxSlot(), std::move(handler));
}

int32_t MsgBox(const std::string& text, int32_t style, const std::string& title) {
  return MessageBoxSlot()(text, style, title);
}

YieldHandler SetYieldHandler(YieldHandler handler) {
  return std::exchange(YieldSlot(), std::move(handler));
}

void DoEvents() {
  if (YieldSlot()) YieldSlot()();
}

void RegisterClass(const std::string& progId, ClassFactory factory) {
  if (factory) {
    Registry()[ToLower(progId)] = std::move(factory);
  } else {
    Registry().erase(ToLower(progId));
  }
}

std::shared_ptr<IUnknown> CreateObject(const std::string& progId) {
  auto it = Registry().find(ToLower(progId));
  if (it == Registry().end()) RaiseError(ErrorNumber::kCannotCreateObject, progId);
  // Copy the factory: it may re-register classes while it runs.
  ClassFactory factory = it->second;
  std::shared_ptr<IUnknown> object = factory();
  if (!object) RaiseError(ErrorNumber::kCannotCreateObject, progId);
  return object;
}

PointerHandler SetPointerHandler(PointerHandler handler) {
  return std::exchange(PointerSlot(), std::move(handler));
}

void SetMousePointer(int16_t pointer) {
  if (PointerSlot()) PointerSlot()(pointer);
}

std::string ComponentFolder() {
  if (!ComponentFolderOverride().empty()) return ComponentFolderOverride();
  static const std::string library_folder = LibraryFolder();
  return library_folder;
}

void SetComponentFolder(const std::string& folder) { ComponentFolderOverride() = folder; }

}  // namespace kolvane
