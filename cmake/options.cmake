# Enough for a stack trace with line numbers; the full debug information doubles the time of a build.
set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O2 -g1 -DNDEBUG")
set(CMAKE_CXX_FLAGS_DEBUG "-g1")
# g++ 12 warns at -O3 of string copies that do not exist. What Windows gets is stripped by packaging/make_zip, which keeps
# the debug information beside it.
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")
if(WIN32)
    string(APPEND CMAKE_CXX_FLAGS_RELEASE " -g1")
endif()

# phn_options: what every target of this project is compiled with. Warnings are errors.
add_library(phn_options INTERFACE)
target_compile_options(phn_options INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    target_compile_options(phn_options INTERFACE -Wthread-safety -Werror=thread-safety)
endif()
# Hardening of what is shipped; .ci/hardening looks at the binaries. MinGW's run-time library has no fortified calls.
if(CMAKE_BUILD_TYPE STREQUAL "Release")
    add_compile_options(-fstack-protector-strong -ffile-prefix-map=${CMAKE_SOURCE_DIR}=.)
    add_link_options(-fstack-protector-strong) # MinGW has it in a library of its own
    if(NOT WIN32)
        add_compile_options(-fstack-clash-protection)
        add_compile_definitions(_FORTIFY_SOURCE=2)
        add_link_options(LINKER:-z,relro LINKER:-z,now)
        include(CheckCXXCompilerFlag)
        check_cxx_compiler_flag(-fcf-protection PHN_HAS_CET)
        add_compile_options($<$<BOOL:${PHN_HAS_CET}>:-fcf-protection>)
    endif()
endif()

if(PHN_SANITIZE)
    add_compile_options(-fsanitize=${PHN_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${PHN_SANITIZE})
endif()

# What the fuzz targets link tells them which of its code an input reached. (The build that measures their seeds asks clang.)
if(PHN_BUILD_FUZZ AND PHN_SANITIZE)
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# phn_win32: the Win32 API. Windows has it; elsewhere the stand-in takes its place.
add_library(phn_win32 INTERFACE)
if(WIN32)
    target_compile_definitions(phn_win32 INTERFACE WIN32_LEAN_AND_MEAN NOMINMAX WINVER=0x0601 _WIN32_WINNT=0x0601)
    target_link_libraries(phn_win32 INTERFACE setupapi user32 advapi32)
else()
    target_link_libraries(phn_win32 INTERFACE phnplatform)
endif()

# phn_packaged_headers: the header-only parts of Debian's packages. A cross compiler must not look into the system's own
# headers, so they are reached through a folder that holds nothing else.
add_library(phn_packaged_headers INTERFACE)
if(CMAKE_CROSSCOMPILING OR CMAKE_SIZEOF_VOID_P EQUAL 4)
    file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/host-headers)
    foreach(package CLI fmt nlohmann)
        file(CREATE_LINK /usr/include/${package} ${CMAKE_BINARY_DIR}/host-headers/${package} SYMBOLIC)
    endforeach()
    target_include_directories(phn_packaged_headers SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/host-headers)
endif()

# Where an installed program finds the library and its data, from the folder it lies in.
file(RELATIVE_PATH PHN_LIBRARIES_FROM_PROGRAMS ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
file(RELATIVE_PATH PHN_DATA_FROM_PROGRAMS ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_DATADIR})

# What Windows shows as the properties of a file; what is said of the product may follow.
function(phn_version_resource target type file description)
    set(product "PHNNRV ${ARGN}")
    string(STRIP "${product}" product)
    configure_file(${CMAKE_SOURCE_DIR}/cmake/version.rc.in ${target}_version.rc @ONLY)
    target_sources(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${target}_version.rc)
endfunction()
