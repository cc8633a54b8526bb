# clang on Linux with MinGW's headers for 32-bit Windows: a second compiler's eye on the files that only Windows builds.
include(${CMAKE_CURRENT_LIST_DIR}/mingw-i686.cmake)
set(CMAKE_CXX_COMPILER clang++-14)
set(CMAKE_CXX_COMPILER_TARGET i686-w64-mingw32)
# clang does not look for a folder that names the thread model, as Debian's does ("12-posix").
execute_process(COMMAND i686-w64-mingw32-g++-posix -print-libgcc-file-name OUTPUT_VARIABLE zarn_libgcc
    OUTPUT_STRIP_TRAILING_WHITESPACE)
get_filename_component(zarn_gcc_folder ${zarn_libgcc} DIRECTORY)
set(CMAKE_CXX_FLAGS_INIT
    "-nostdinc++ -isystem ${zarn_gcc_folder}/include/c++ -isystem ${zarn_gcc_folder}/include/c++/i686-w64-mingw32")
# Nothing is linked.
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
