# The Debian packages, one for each component that cmake/install.cmake and bindings/python name. ./dev package makes them.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME phnnrv)
set(CPACK_PACKAGE_CONTACT "The phnnrv developers <phnnrv@example.org>")
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_SOURCE_DIR}/build)
set(CPACK_COMPONENTS_ALL libs dev tools python)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

# COMPONENT PACKAGE SECTION SUMMARY DESCRIPTION
macro(debian_package component package section summary description)
    string(TOUPPER ${component} upper)
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${package})
    set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section})
    set(CPACK_DEBIAN_${upper}_DESCRIPTION "${summary}\n${description}")
    install(FILES ${CMAKE_BINARY_DIR}/debian/copyright ${CMAKE_BINARY_DIR}/debian/changelog.Debian.gz
        DESTINATION share/doc/${package} COMPONENT ${component})
endmacro()

set(needs_libraries "libphnnrv0 (= ${PROJECT_VERSION}-1)")
debian_package(libs libphnnrv0 libs "plug-in library for CDMA handsets"
    "A host program uses one CDMA handset attached by USB or a serial port with\nit: its status, settings, contacts, events, messages and call history.")
set(CPACK_DEBIAN_LIBS_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_LIBS_PACKAGE_CONTROL_EXTRA ${CMAKE_SOURCE_DIR}/packaging/debian/libs/triggers)

debian_package(dev libphnnrv-dev libdevel "plug-in library for CDMA handsets, for development"
    "The headers for C and C++, pkg-config and CMake files, documentation and\nexamples.")
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "${needs_libraries}")

debian_package(tools phnnrv-tools comm "programs for CDMA handsets"
    "phnctl shows, changes, exchanges and backs up what a CDMA handset holds.\nphnsim is a simulated handset for those who have none.")
set(CPACK_DEBIAN_TOOLS_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "${needs_libraries}")

debian_package(python python3-phnnrv python "plug-in library for CDMA handsets, for Python"
    "A package over the library's functions that gives plain data classes.")
set(CPACK_DEBIAN_PYTHON_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS "${needs_libraries}, python3 (>= 3.11)")
# What Python compiles for itself is made with the package and goes with it.
set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA
    ${CMAKE_SOURCE_DIR}/packaging/debian/python/postinst ${CMAKE_SOURCE_DIR}/packaging/debian/python/prerm)

file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/debian)
configure_file(packaging/debian/copyright debian/copyright COPYONLY)
string(TIMESTAMP changelog_date "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(packaging/debian/changelog.in debian/changelog @ONLY)
execute_process(COMMAND gzip -9nc ${CMAKE_BINARY_DIR}/debian/changelog OUTPUT_FILE ${CMAKE_BINARY_DIR}/debian/changelog.Debian.gz
    COMMAND_ERROR_IS_FATAL ANY)
include(CPack)
