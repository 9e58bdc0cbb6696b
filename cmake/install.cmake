# cmake --install: the programs, the odb library (with the platform library it links) and
# its public headers, a CMake package (find_package(odb) gives odb::odb) and a pkg-config
# file (pkg-config --cflags --libs odb). Both find HDF5, whose header the library's public
# headers include, through the system's own package files.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(ODB_INSTALLED_PROGRAMS odb_server odb_cli odb_fields odb_build odb_export ccx_import)
foreach(program ${ODB_INSTALLED_PROGRAMS})
  if(TARGET ${program})
    install(TARGETS ${program} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  endif()
endforeach()

install(TARGETS odb odb_platform EXPORT odbTargets
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
file(GLOB ODB_PUBLIC_HEADERS ${PROJECT_SOURCE_DIR}/odb/*.h)
install(FILES ${ODB_PUBLIC_HEADERS} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/odb)

set(ODB_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/odb)
install(EXPORT odbTargets NAMESPACE odb:: DESTINATION ${ODB_CMAKE_DIR})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/odbConfig.cmake.in
                              ${PROJECT_BINARY_DIR}/odbConfig.cmake
                              INSTALL_DESTINATION ${ODB_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/odbConfigVersion.cmake
                                 COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/odbConfig.cmake ${PROJECT_BINARY_DIR}/odbConfigVersion.cmake
        DESTINATION ${ODB_CMAKE_DIR})

configure_file(${PROJECT_SOURCE_DIR}/cmake/odb.pc.in ${PROJECT_BINARY_DIR}/odb.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/odb.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
