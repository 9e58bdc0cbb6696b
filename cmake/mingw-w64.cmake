# Cross build for 64-bit Windows from Linux with mingw-w64 (posix thread model).
#   cmake -S . -B build/windows -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64.cmake \
#         -DODB_MINGW_PREFIX=<folder holding the cross-built HDF5>
# Programs are linked statically (C and C++ runtimes, winpthread, zlib, HDF5), so each .exe
# runs alone on Windows. Test programs run under Wine, named here as the emulator.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(ODB_MINGW_TRIPLET x86_64-w64-mingw32)

set(CMAKE_C_COMPILER ${ODB_MINGW_TRIPLET}-gcc-posix)
set(CMAKE_CXX_COMPILER ${ODB_MINGW_TRIPLET}-g++-posix)
set(CMAKE_RC_COMPILER ${ODB_MINGW_TRIPLET}-windres)
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")

# Where the cross-built libraries live: the mingw sysroot, plus an optional prefix (HDF5).
set(ODB_MINGW_PREFIX "" CACHE PATH "Install prefix of libraries cross-built for mingw-w64")
set(CMAKE_FIND_ROOT_PATH /usr/${ODB_MINGW_TRIPLET} ${ODB_MINGW_PREFIX})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# zlib1.dll is not part of Windows: link libz.a instead.
set(ZLIB_USE_STATIC_LIBS ON)

find_program(ODB_WINE NAMES wine wine64)
if(ODB_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${ODB_WINE})
endif()
