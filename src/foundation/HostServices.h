#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "foundation/Error.h"
#include "foundation/Export.h"
#include "interfaces/IUnknown.h"

// What the host provides: message boxes, yielding to its message queue, outside components by
// ProgID, the mouse pointer and the component's folder. Every setter returns the handler it
// replaces, so a caller can put it back. Call them from the host's user-interface thread.
namespace kolvane {

// Message box styles and answers, as Visual Basic's.
inline constexpr int32_t vbOKOnly = 0;
inline constexpr int32_t vbCritical = 16;
inline constexpr int32_t vbExclamation = 48;
inline constexpr int32_t vbInformation = 64;
inline constexpr int32_t vbOK = 1;

// Shows text in a modal message box and returns the button pressed.
using MessageBoxHandler =
    std::function<int32_t(const std::string& text, int32_t style, const std::string& title)>;

// Installs the message box handler (an empty one restores the default, which writes
// "title: text" to stderr, "Kolvane" standing for an empty title, and answers vbOK).
KOLVANE_API MessageBoxHandler SetMessageBoxHandler(MessageBoxHandler handler);

// Shows a message box through the installed handler.
KOLVANE_API int32_t MsgBox(const std::string& text, int32_t style = vbOKOnly,
                           const std::string& title = "");

// Lets the host process its pending messages; long loops call it before each item.
using YieldHandler = std::function<void()>;

// Installs the yield handler (an empty one restores the default, which does nothing).
KOLVANE_API YieldHandler SetYieldHandler(YieldHandler handler);

// Yields to the host's message queue through the installed handler.
KOLVANE_API void DoEvents();

// Creates an outside component.
using ClassFactory = std::function<std::shared_ptr<IUnknown>()>;

// Registers the factory of a ProgID (compared without regard to case); an empty factory
// unregisters it.
KOLVANE_API void RegisterClass(const std::string& progId, ClassFactory factory);

// Creates the component registered under progId; error 429 when none is, or when the factory
// gives nothing.
KOLVANE_API std::shared_ptr<IUnknown> CreateObject(const std::string& progId);

// Creates the component registered under progId as interface I; error 429 when none is
// registered, 13 when the object does not implement I.
template <class I>
std::shared_ptr<I> CreateObjectAs(const std::string& progId) {
  auto object = std::dynamic_pointer_cast<I>(CreateObject(progId));
  if (!object) RaiseError(ErrorNumber::kTypeMismatch, progId + " lacks the interface asked for");
  return object;
}

// Mouse pointer shapes.
inline constexpr int16_t vbDefault = 0;
inline constexpr int16_t vbHourglass = 11;

// Shows a mouse pointer shape.
using PointerHandler = std::function<void(int16_t pointer)>;

// Installs the pointer handler (an empty one restores the default, which does nothing).
KOLVANE_API PointerHandler SetPointerHandler(PointerHandler handler);

// Sets the mouse pointer through the installed handler.
KOLVANE_API void SetMousePointer(int16_t pointer);

// The component's folder: the folder of the library file unless SetComponentFolder chose another.
KOLVANE_API std::string ComponentFolder();

// Makes folder the component's folder; an empty text goes back to the library file's folder.
KOLVANE_API void SetComponentFolder(const std::string& folder);

}  // namespace kolvane
