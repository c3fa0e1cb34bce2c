# The same for 32-bit Windows: cmake --preset windows -B build-windows-i686
# -DCMAKE_TOOLCHAIN_FILE=$PWD/cmake/windows-i686.cmake
set(QUENBROOK_WINDOWS_CPU i686)
include(${CMAKE_CURRENT_LIST_DIR}/windows.cmake)
