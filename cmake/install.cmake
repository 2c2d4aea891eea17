# What is installed, in four components: libs (what a host program needs to run), dev (to be built), tools, python.
include(CMakePackageConfigHelpers)

if(WIN32)
    return() # packaging/make_zip
endif()

install(TARGETS phnnrv phnplatform EXPORT phnnrv
    LIBRARY COMPONENT libs NAMELINK_COMPONENT dev
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY include/ TYPE INCLUDE COMPONENT dev FILES_MATCHING PATTERN "*.h" PATTERN "*.hpp")
# In a folder of their own, as they are named like the system's elsewhere.
install(DIRECTORY platform/posix/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/phnnrv COMPONENT dev
    FILES_MATCHING PATTERN "*.h" PATTERN "phn_platform_*" EXCLUDE)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/phnnrv)
configure_package_config_file(cmake/phnnrv-config.cmake.in ${CMAKE_BINARY_DIR}/phnnrv-config.cmake
    INSTALL_DESTINATION ${package_folder} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/phnnrv-config-version.cmake COMPATIBILITY SameMajorVersion)
install(EXPORT phnnrv NAMESPACE phnnrv:: FILE phnnrv-targets.cmake DESTINATION ${package_folder} COMPONENT dev)
install(FILES ${CMAKE_BINARY_DIR}/phnnrv-config.cmake ${CMAKE_BINARY_DIR}/phnnrv-config-version.cmake
    DESTINATION ${package_folder} COMPONENT dev)

file(RELATIVE_PATH prefix_from_pkgconfig ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
foreach(name phnnrv phnnrv-platform)
    configure_file(packaging/${name}.pc.in ${name}.pc @ONLY)
    install(FILES ${CMAKE_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT dev)
endforeach()

# At the places where they lead to each other, and to the headers.
install(FILES README.md CHANGELOG.md CONTRIBUTING.md TYPE DOC COMPONENT dev)
install(FILES tools/phnctl/labels/README.md DESTINATION ${CMAKE_INSTALL_DOCDIR}/tools/phnctl/labels COMPONENT dev)
install(FILES bindings/python/README.md DESTINATION ${CMAKE_INSTALL_DOCDIR}/bindings/python COMPONENT dev)
file(RELATIVE_PATH headers_from_doc ${CMAKE_INSTALL_FULL_DOCDIR} ${CMAKE_INSTALL_FULL_INCLUDEDIR})
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/doc)
file(CREATE_LINK ${headers_from_doc} ${CMAKE_BINARY_DIR}/doc/include SYMBOLIC)
install(FILES ${CMAKE_BINARY_DIR}/doc/include TYPE DOC COMPONENT dev)
install(DIRECTORY docs examples TYPE DOC COMPONENT dev PATTERN "CMakeLists.txt" EXCLUDE PATTERN "man" EXCLUDE)
install(FILES LICENSE TYPE DOC COMPONENT libs)

if(PHN_BUILD_TOOLS)
    install(TARGETS phnctl phnsim RUNTIME COMPONENT tools)
    install(DIRECTORY tools/phnctl/labels DESTINATION ${CMAKE_INSTALL_DATADIR}/phnnrv COMPONENT tools)
    find_program(gzip gzip REQUIRED)
    foreach(page ${CMAKE_BINARY_DIR}/share/man/man1/phnctl.1 ${CMAKE_SOURCE_DIR}/docs/man/phnsim.1)
        get_filename_component(name ${page} NAME)
        install(CODE "execute_process(COMMAND ${gzip} -9nc ${page} OUTPUT_FILE ${CMAKE_BINARY_DIR}/${name}.gz COMMAND_ERROR_IS_FATAL ANY)" COMPONENT tools)
        install(FILES ${CMAKE_BINARY_DIR}/${name}.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)
    endforeach()
    set(zsh_folder site-functions)
    if(PHN_PACKAGES)
        set(zsh_folder vendor-completions) # Debian's
    endif()
    foreach(shell bash-completion/completions:phnctl.bash:phnsim.bash zsh/${zsh_folder}:_phnctl:_phnsim
            fish/vendor_completions.d:phnctl.fish:phnsim.fish)
        string(REPLACE ":" ";" files ${shell})
        list(POP_FRONT files folder)
        list(TRANSFORM files PREPEND packaging/completions/)
        install(FILES ${files} DESTINATION ${CMAKE_INSTALL_DATADIR}/${folder} COMPONENT tools)
    endforeach()
    # Where Debian's Wireshark looks for scripts.
    install(FILES wireshark/phnnrv.lua DESTINATION ${CMAKE_INSTALL_LIBDIR}/wireshark/plugins COMPONENT tools)
    install(FILES platform/posix/udev/70-phnnrv.rules DESTINATION lib/udev/rules.d COMPONENT tools)
endif()
