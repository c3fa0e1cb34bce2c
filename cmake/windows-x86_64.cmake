# Debian's mingw-w64 with POSIX threads, for 64-bit Windows 7 and later.
set(QUENBROOK_WINDOWS_CPU x86_64)
include(${CMAKE_CURRENT_LIST_DIR}/windows.cmake)
