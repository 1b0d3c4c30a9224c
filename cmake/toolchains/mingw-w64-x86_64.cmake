# 64-bit Windows with MinGW-w64 GCC (the build whose tests run under wine64).
set(FNRK_MINGW_ARCH x86_64)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64-common.cmake)
