# 32-bit Windows with MinGW-w64 GCC (the build that ships).
set(FNRK_MINGW_ARCH i686)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64-common.cmake)
