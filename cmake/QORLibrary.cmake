# qor_set_warnings(<target>): the warnings that all code of this repository compiles without.
function(qor_set_warnings target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
    if(QOR_WARNINGS_AS_ERRORS)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
endfunction()

# qor_add_library(<target> EXPORT_NAME <name> SOURCES <files> [HEADERS <folders>] [DEPENDS <targets>])
#
# A shared library, known as QOR::<name> here and in the installed package. Each folder of HEADERS has a
# subfolder qor/ with public headers.
function(qor_add_library target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "EXPORT_NAME" "SOURCES;HEADERS;DEPENDS")

    add_library(${target} SHARED ${arg_SOURCES})
    add_library(QOR::${arg_EXPORT_NAME} ALIAS ${target})
    set_target_properties(
        ${target}
        PROPERTIES EXPORT_NAME ${arg_EXPORT_NAME}
                   VERSION ${PROJECT_VERSION}
                   SOVERSION ${PROJECT_VERSION_MAJOR}
                   CXX_EXTENSIONS OFF
                   CXX_VISIBILITY_PRESET hidden
                   VISIBILITY_INLINES_HIDDEN ON
                   INSTALL_RPATH "$ORIGIN")
    target_compile_features(${target} PUBLIC cxx_std_17)
    # Calls of another library go through its table of addresses straight away.
    target_compile_options(${target} PRIVATE -fno-semantic-interposition -fno-plt)
    qor_set_warnings(${target})
    qor_harden(${target})

    set(hiddenSymbols ${PROJECT_SOURCE_DIR}/cmake/hide-standard-library.map)
    target_link_options(${target} PRIVATE -Wl,--version-script,${hiddenSymbols})
    set_target_properties(${target} PROPERTIES LINK_DEPENDS ${hiddenSymbols})

    # The libraries lie in layers: a symbol that no lower library has is an error here, not in the caller's program.
    # Sanitised code is excepted, since its run-time library comes with the program.
    if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
        target_link_options(${target} PRIVATE -Wl,-z,defs)
    endif()

    foreach(folder IN LISTS arg_HEADERS)
        target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/${folder}>)
    endforeach()
    target_include_directories(${target} PUBLIC $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>
                               PRIVATE ${PROJECT_SOURCE_DIR})
    target_link_libraries(${target} PUBLIC ${arg_DEPENDS})
endfunction()
