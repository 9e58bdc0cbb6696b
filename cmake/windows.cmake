# Settings of the Windows build, cross-compiled with cmake/mingw-w64.cmake and tested under
# Wine. Included by the top-level CMakeLists.txt when the target system is Windows.

# The benchmarks measure the Linux server (process memory, /proc); not built here.
set(ODB_BUILD_BENCH OFF)

# The cross-built HDF5 prefix: found through its CMake package files. The host's HDF5
# compiler wrappers must not be asked about a Windows build.
set(HDF5_USE_STATIC_LIBRARIES ON)
set(HDF5_FIND_DEBUG OFF)
set(HDF5_C_COMPILER_EXECUTABLE "")
set(HDF5_C_COMPILER_EXECUTABLE_NO_INTERROGATE ON)

# GoogleTest built from the sources that Debian's googletest package installs.
set(ODB_GTEST_SOURCE /usr/src/googletest CACHE PATH "GoogleTest source folder")

# Tests are listed by running them, which for a cross build means through the emulator
# (Wine) when CTest runs, not at build time.
set(ODB_GTEST_DISCOVERY_MODE DISCOVERY_MODE PRE_TEST)

# Loads GoogleTest for the tests: defines GTest::gtest, GTest::gtest_main, GTest::gmock.
macro(odb_find_gtest)
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  set(BUILD_GMOCK ON CACHE BOOL "" FORCE)
  add_subdirectory(${ODB_GTEST_SOURCE} ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
endmacro()

# nlohmann/json, CLI11 and fast_float are header-only and the same for every target: the host's copies
# are used, and only they (the rest of the host's include folder is for Linux).
file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/host_headers)
foreach(folder nlohmann CLI fast_float)
  file(CREATE_LINK /usr/include/${folder} ${PROJECT_BINARY_DIR}/host_headers/${folder} SYMBOLIC)
endforeach()
include_directories(SYSTEM ${PROJECT_BINARY_DIR}/host_headers)

# Their package files would add the whole host include folder: small stand-ins instead,
# with targets of the same names over the host_headers folder.
function(odb_host_header_package name target)
  set(dir ${PROJECT_BINARY_DIR}/host_packages/${name})
  file(WRITE ${dir}/${name}Config.cmake
       "if(NOT TARGET ${target})\n"
       "  add_library(${target} INTERFACE IMPORTED)\n"
       "  set_target_properties(${target} PROPERTIES INTERFACE_INCLUDE_DIRECTORIES\n"
       "                        ${PROJECT_BINARY_DIR}/host_headers)\n"
       "endif()\n")
  set(${name}_DIR ${dir} CACHE PATH "" FORCE)
endfunction()
odb_host_header_package(CLI11 CLI11::CLI11)
odb_host_header_package(nlohmann_json nlohmann_json::nlohmann_json)
