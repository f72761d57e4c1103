# What cpack makes: a Debian package of each component. Debian's places are those of an installation
# in /usr, which the preset "package" configures; see scripts/package.sh.

set(NTK_PACKAGE_CONTACT "ntkperf developers <ntkperf@example.org>" CACHE STRING
    "Who distributes the packages, for their control files")

# In all of them: what dpkg and Debian's readers look for.
string(TIMESTAMP package_date "%a, %d %b %Y %H:%M:%S +0000" UTC)
function(ntk_package_documents package component)
    set(documents ${CMAKE_CURRENT_BINARY_DIR}/${package})
    file(MAKE_DIRECTORY ${documents})
    add_custom_command(OUTPUT ${documents}/changelog.gz
        COMMAND ${PERL_EXECUTABLE} ${CMAKE_CURRENT_SOURCE_DIR}/debian/changelog.pl
            ${PROJECT_SOURCE_DIR}/CHANGELOG.md ntkperf ${NTK_PACKAGE_CONTACT} ${package_date}
            ${documents}/changelog
        DEPENDS ${PROJECT_SOURCE_DIR}/CHANGELOG.md debian/changelog.pl
        VERBATIM)
    add_custom_target(${package}_changelog ALL DEPENDS ${documents}/changelog.gz)
    add_dependencies(pages ${package}_changelog)
    install(FILES ${documents}/changelog.gz debian/copyright
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package} COMPONENT ${component})
endfunction()

# ntk_package(COMPONENT NAME SECTION SUMMARY [DEPENDENCY...])
macro(ntk_package component name section summary)
    string(TOUPPER ${component} upper)
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name})
    set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section})
    set(CPACK_DEBIAN_${upper}_FILE_NAME DEB-DEFAULT)
    set(CPACK_COMPONENT_${upper}_DESCRIPTION "${summary}\n${introduction}")
    set(CPACK_DEBIAN_${upper}_PACKAGE_DEPENDS "${ARGN}")
    ntk_package_documents(${name} ${component})
endmacro()

# The first paragraph of the README, for all descriptions.
file(READ ${PROJECT_SOURCE_DIR}/README.md readme)
string(REGEX REPLACE "^# [^\n]*\n\n" "" introduction "${readme}")
string(REGEX REPLACE "\n\n.*" "" introduction "${introduction}")
string(REPLACE "`" "" introduction "${introduction}")
file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/introduction "${introduction}")
execute_process(COMMAND fmt -w 75 ${CMAKE_CURRENT_BINARY_DIR}/introduction
    OUTPUT_VARIABLE introduction OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)

set(library_package libntk${NTK_LIBRARY_SOVERSION})
set(this_version "(= ${PROJECT_VERSION})")
ntk_package(programs ntkperf devel "measures the functions of a data-compression library"
    "${library_package} ${this_version}")
ntk_package(libraries ${library_package} libs "data-compression library that ntkperf measures")
ntk_package(development ntkperf-dev libdevel "harness to measure the functions of a library"
    "${library_package} ${this_version}, libstdc++-12-dev | libstdc++-dev, zlib1g-dev")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS "cmake, ntkperf")
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_SUGGESTS "slurm-client")

# New libraries are in the loader's cache at the end of the installation.
set(CPACK_DEBIAN_LIBRARIES_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_SOURCE_DIR}/debian/triggers)
install(FILES debian/libntk.lintian-overrides RENAME ${library_package}
    DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides COMPONENT libraries)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT ${NTK_PACKAGE_CONTACT})
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_COMPONENTS_ALL programs libraries development)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
# Which packages have the libraries that are used; and, for others, which version has ours.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
