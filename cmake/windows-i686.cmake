# The same for 32-bit Windows: cmake --preset windows -B build-windows-i686
# -DCMAKE_TOOLCHAIN_FILE=$PWD/cmake/windows-i686.cmake
set(QUENBROOK_WINDOWS_CPU i686)
# Boost takes this compiler for one before C++11 and says so in every source.
set(CMAKE_CXX_FLAGS_INIT "-DBOOST_MP_DISABLE_DEPRECATE_03_WARNING")
include(${CMAKE_CURRENT_LIST_DIR}/windows.cmake)
