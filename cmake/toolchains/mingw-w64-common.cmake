# Shared part of the MinGW-w64 toolchains: included by mingw-w64-<arch>.cmake after it has set
# FNRK_MINGW_ARCH. The `-posix` compilers carry std::thread and std::mutex; everything is linked
# statically so that the programs and the DLL need no MinGW runtime beside them.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR ${FNRK_MINGW_ARCH})
set(triple ${FNRK_MINGW_ARCH}-w64-mingw32)
set(CMAKE_C_COMPILER ${triple}-gcc-posix)
set(CMAKE_CXX_COMPILER ${triple}-g++-posix)
set(CMAKE_RC_COMPILER ${triple}-windres)

# The Windows dependencies built by scripts/build-windows.sh live in FNRK_WINDOWS_PREFIX; CMake's
# checks run the toolchain again in their own projects, so the variable is handed on to them.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES FNRK_WINDOWS_PREFIX)
set(CMAKE_FIND_ROOT_PATH /usr/${triple} ${FNRK_WINDOWS_PREFIX})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(static_runtime "-static -static-libgcc -static-libstdc++")
set(CMAKE_EXE_LINKER_FLAGS_INIT "${static_runtime}")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "${static_runtime}")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "${static_runtime}")
