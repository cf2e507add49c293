#pragma once

namespace kolvane {

// Structures nested deeper than this are taken for a catalogue type that contains itself:
// building them raises error 28 instead of recursing without end.
inline constexpr int kMaxStructureDepth = 32;

}  // namespace kolvane
