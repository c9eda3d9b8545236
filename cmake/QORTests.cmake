# qor_add_tests(<folder> [LIBRARIES <targets>] [DEFINITIONS <definitions>])
#
# One program of all tests/<folder>/*Test.cpp, and one ctest that runs it: a process for each of thousands of cases
# would take longer than the cases. A folder without tests is passed over.
function(qor_add_tests folder)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LIBRARIES;DEFINITIONS")

    file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/${folder}/*Test.cpp)
    if(NOT sources)
        return()
    endif()

    set(target qor-${folder}-tests)
    add_executable(${target} ${sources})
    target_link_libraries(${target} PRIVATE QOR::QOR qor_test_support GTest::gmock_main ${arg_LIBRARIES})
    target_compile_definitions(${target} PRIVATE QOR_SOURCE_DIR="${PROJECT_SOURCE_DIR}" ${arg_DEFINITIONS})
    set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
    qor_set_warnings(${target})
    # What is tested is the library; the tests shall compile quickly. (-fpch-preprocess is what ccache asks for.)
    target_compile_options(${target} PRIVATE -O0 $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
    target_precompile_headers(${target} PRIVATE <gtest/gtest.h> <qor/QOR.h>)

    add_test(NAME ${folder} COMMAND ${target} --gtest_brief=1)
    set_tests_properties(${folder} PROPERTIES TIMEOUT 1500 LABELS ${folder})
endfunction()
