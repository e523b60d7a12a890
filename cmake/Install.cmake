# Install: headers, the shared library, a CMake package (find_package(zomath)) and a pkg-config file.
include(CMakePackageConfigHelpers)

install(TARGETS zomath EXPORT zomathTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY include/zomath DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

set(ZOMATH_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/zomath)
install(EXPORT zomathTargets NAMESPACE zomath:: DESTINATION ${ZOMATH_CMAKE_DIR})
configure_package_config_file(cmake/zomathConfig.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/zomathConfig.cmake INSTALL_DESTINATION ${ZOMATH_CMAKE_DIR})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/zomathConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/zomathConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/zomathConfigVersion.cmake
        DESTINATION ${ZOMATH_CMAKE_DIR})

# The pkg-config file finds its prefix relative to itself, so an install moved by --prefix works.
file(RELATIVE_PATH ZOMATH_PC_TO_PREFIX "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
string(REGEX REPLACE "/$" "" ZOMATH_PC_TO_PREFIX "${ZOMATH_PC_TO_PREFIX}")
configure_file(cmake/zomath.pc.in ${CMAKE_CURRENT_BINARY_DIR}/zomath.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/zomath.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
