#pragma once

#include <string>

#include "foundation/Export.h"

namespace kolvane {

// Writes text to path through a temporary file in the same folder and a rename, so that the
// file is either the old one or the whole new one, with the old one's permissions. A path that
// exists and is not a regular file (/dev/stdout, a pipe) is written through, never replaced; a
// symbolic link is replaced, never followed. An interrupt or termination during the write
// removes the temporary file. False with the reason in error.
KOLVANE_API bool WriteFileAtomically(const std::string& path, const std::string& text,
                                     std::string& error);

}  // namespace kolvane
