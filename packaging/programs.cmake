# Programs, with a man page and completions for bash and zsh, which the build makes of what the
# program prints as its help.
find_package(Perl REQUIRED)

set(pages_dir ${CMAKE_CURRENT_BINARY_DIR}/pages)
file(MAKE_DIRECTORY ${pages_dir})

# Debian's zsh looks into different folders for what packages bring and for what administrators do.
set(zsh_dir site-functions)
if(CMAKE_INSTALL_PREFIX STREQUAL /usr)
    set(zsh_dir vendor-completions)
endif()

# ntk_install_program(TARGET SUMMARY [HELP KEY]): KEY prints the help, --help if it is not given.
function(ntk_install_program target summary)
    cmake_parse_arguments(program "" HELP "" ${ARGN})
    if(NOT program_HELP)
        set(program_HELP --help)
    endif()
    install(TARGETS ${target} COMPONENT programs)
    ntk_set_install_runpath(${target} $ORIGIN/${NTK_PROGRAMS_TO_LIBRARIES})

    set_property(GLOBAL APPEND PROPERTY NTK_INSTALLED_PROGRAMS ${target})
    set_property(GLOBAL PROPERTY NTK_SUMMARY_${target} "${summary}")
    set_property(GLOBAL PROPERTY NTK_HELP_${target} "${program_HELP}")
endfunction()

# ntk_make_pages(): when all programs are known, because each page names the others.
function(ntk_make_pages)
    get_property(programs GLOBAL PROPERTY NTK_INSTALLED_PROGRAMS)
    file(GLOB makers CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/pages/*)
    foreach(program IN LISTS programs)
        get_property(summary GLOBAL PROPERTY NTK_SUMMARY_${program})
        get_property(help GLOBAL PROPERTY NTK_HELP_${program})
        set(others ${programs})
        list(REMOVE_ITEM others ${program})
        set(files
            ${pages_dir}/${program}.1.gz ${pages_dir}/${program}.bash ${pages_dir}/_${program})
        add_custom_command(OUTPUT ${files}
            COMMAND ${PERL_EXECUTABLE} ${CMAKE_CURRENT_SOURCE_DIR}/pages/pages.pl
                ${program} $<TARGET_FILE:${program}> ${help} ${summary} ${PROJECT_VERSION}
                ${PROJECT_SOURCE_DIR} ${CMAKE_INSTALL_FULL_DOCDIR}/docs/guide.md
                ${pages_dir} ${others}
            DEPENDS ${program} ${makers} ${PROJECT_SOURCE_DIR}/README.md
                ${PROJECT_SOURCE_DIR}/docs/guide.md
            VERBATIM)
        list(APPEND pages ${files})
        install(FILES ${pages_dir}/${program}.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
            COMPONENT programs)
        install(FILES ${pages_dir}/${program}.bash RENAME ${program}
            DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT programs)
        install(FILES ${pages_dir}/_${program}
            DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/${zsh_dir} COMPONENT programs)
    endforeach()
    add_custom_target(pages ALL DEPENDS ${pages})
endfunction()
