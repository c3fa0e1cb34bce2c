# What the toolchain files of the two kinds of Windows share; they set QUENBROOK_WINDOWS_CPU.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR ${QUENBROOK_WINDOWS_CPU})

set(triple ${QUENBROOK_WINDOWS_CPU}-w64-mingw32)
set(CMAKE_C_COMPILER ${triple}-gcc-posix)
set(CMAKE_CXX_COMPILER ${triple}-g++-posix)
set(CMAKE_RC_COMPILER ${triple}-windres)

# SQLite, libcurl, gzip and GoogleTest as tools/build-windows-libraries leaves them.
set(QUENBROOK_WINDOWS_LIBRARIES
  ${CMAKE_CURRENT_LIST_DIR}/../build-windows-libraries/${QUENBROOK_WINDOWS_CPU})
set(CMAKE_FIND_ROOT_PATH ${QUENBROOK_WINDOWS_LIBRARIES} /usr/${triple})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# The libraries, too, are for Windows 7 and later.
set(CMAKE_C_FLAGS_INIT "-D_WIN32_WINNT=0x0601")
# Without the second and third CMake switches back to shared libraries amid the list.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_LINK_SEARCH_START_STATIC ON)
set(CMAKE_LINK_SEARCH_END_STATIC ON)

# Test programs run under wine.
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../tests/windows/run-test)
