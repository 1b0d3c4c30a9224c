#pragma once

// The engine's own file access, the host's kind chosen at compile time: NativeFile (PosixFile or
// WindowsFile, the same members) and NativeHandle, what the byte-range locks are set on.

#ifdef _WIN32
#include "engine/io/windows_file.hpp"
namespace fnrk::engine::io {
using NativeFile = WindowsFile;
}  // namespace fnrk::engine::io
#else
#include "engine/io/posix_file.hpp"
namespace fnrk::engine::io {
using NativeFile = PosixFile;
}  // namespace fnrk::engine::io
#endif
