include(CMakePackageConfigHelpers)

set(packageDir ${CMAKE_INSTALL_LIBDIR}/cmake/QOR)

install(
    TARGETS QORStd QORI18n QOR
    EXPORT QORTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
            COMPONENT Runtime
            NAMELINK_COMPONENT Development)
install(
    DIRECTORY foundation/qor kernel/qor meta/qor generated/qor
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
    COMPONENT Development
    FILES_MATCHING
    PATTERN "*.h")

# Where gdb looks for what belongs to a library, if the prefix is that of gdb.
install(
    FILES debugger/libQOR-gdb.py
    DESTINATION ${CMAKE_INSTALL_DATADIR}/gdb/auto-load${CMAKE_INSTALL_FULL_LIBDIR}
    RENAME libQOR.so.${PROJECT_VERSION}-gdb.py
    COMPONENT Development)

configure_package_config_file(cmake/QORConfig.cmake.in cmake/QORConfig.cmake INSTALL_DESTINATION ${packageDir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/cmake/QORConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(
    FILES ${PROJECT_BINARY_DIR}/cmake/QORConfig.cmake ${PROJECT_BINARY_DIR}/cmake/QORConfigVersion.cmake
    DESTINATION ${packageDir}
    COMPONENT Development)
install(
    EXPORT QORTargets
    NAMESPACE QOR::
    DESTINATION ${packageDir}
    COMPONENT Development)

# With a relative library folder qor.pc finds its prefix from its own place, so that the installed tree can be moved.
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
    set(pcPrefix "${CMAKE_INSTALL_PREFIX}")
    set(pcLibDir "${CMAKE_INSTALL_LIBDIR}")
else()
    file(RELATIVE_PATH pcPrefix "/prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/prefix")
    string(REGEX REPLACE "/$" "" pcPrefix "\${pcfiledir}/${pcPrefix}")
    set(pcLibDir "\${prefix}/${CMAKE_INSTALL_LIBDIR}")
endif()
if(IS_ABSOLUTE "${CMAKE_INSTALL_INCLUDEDIR}")
    set(pcIncludeDir "${CMAKE_INSTALL_INCLUDEDIR}")
else()
    set(pcIncludeDir "\${prefix}/${CMAKE_INSTALL_INCLUDEDIR}")
endif()
configure_file(cmake/qor.pc.in cmake/qor.pc @ONLY)
install(
    FILES ${PROJECT_BINARY_DIR}/cmake/qor.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT Development)
