# The same for 32-bit Windows: cmake --preset windows -B build-windows-i686
# -DCMAKE_TOOLCHAIN_FILE=$PWD/cmake/windows-i686.cmake
set(QUENBROOK_WINDOWS_CPU i686)
# Boost takes this compiler for one before C++11 and says so in every source.
add_compile_definitions(BOOST_MP_DISABLE_DEPRECATE_03_WARNING)
# A double is rounded after every operation, as in the 64-bit programs: the older unit of the
# processor keeps more digits for as long as a value stays in it, and equal values differ.
add_compile_options(-msse2 -mfpmath=sse)
include(${CMAKE_CURRENT_LIST_DIR}/windows.cmake)
