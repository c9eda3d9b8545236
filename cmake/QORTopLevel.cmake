# Habits of this repository's own builds; a project that includes the library chooses its own.

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE)
endif()

set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
# What is built holds no path of this machine.
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)

find_program(QOR_CCACHE ccache DOC "Compiler cache, used if found")
if(QOR_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    # The tests have precompiled headers, which ccache takes only under these terms.
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros
                                    ${QOR_CCACHE})
endif()
