# ntk_install_program(TARGET SUMMARY [HELP KEY]): installs the program.
function(ntk_install_program target summary)
    cmake_parse_arguments(program "" HELP "" ${ARGN})
    install(TARGETS ${target} COMPONENT programs)
    ntk_set_install_runpath(${target} $ORIGIN/${NTK_PROGRAMS_TO_LIBRARIES})
endfunction()
