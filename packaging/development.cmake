# What builds benchmarks of somebody's own library: the harness, headers, and the package that
# find_package(ntkperf) reads.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/${PROJECT_NAME})
set(harness_headers ${CMAKE_INSTALL_INCLUDEDIR}/${PROJECT_NAME})
set(library_headers ${CMAKE_INSTALL_INCLUDEDIR}/ntk)

install(TARGETS perflib perfmain EXPORT ntkperf ARCHIVE COMPONENT development
    INCLUDES DESTINATION ${harness_headers})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/ntk/include/ DESTINATION ${library_headers}
    COMPONENT development FILES_MATCHING PATTERN *.h)
foreach(room IN LISTS perflib_rooms)
    install(DIRECTORY ${PROJECT_SOURCE_DIR}/perflib/src/${room}/ DESTINATION ${harness_headers}
        COMPONENT development FILES_MATCHING PATTERN *.h)
endforeach()
foreach(library ntkcore ntks ntkdc)
    target_include_directories(${library} INTERFACE $<INSTALL_INTERFACE:${library_headers}>)
endforeach()

file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/ntkperfConfig.cmake
    "include(CMakeFindDependencyMacro)
find_dependency(ZLIB)
include(\${CMAKE_CURRENT_LIST_DIR}/ntkperfTargets.cmake)
")
write_basic_package_version_file(ntkperfConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(EXPORT ntkperf FILE ntkperfTargets.cmake NAMESPACE ntkperf:: DESTINATION ${package_dir}
    COMPONENT development)
install(FILES
    ${CMAKE_CURRENT_BINARY_DIR}/ntkperfConfig.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/ntkperfConfigVersion.cmake
    DESTINATION ${package_dir} COMPONENT development)
