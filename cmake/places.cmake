# Where an installation puts things, as seen from the programs: those look for their libraries and
# helpers beside themselves first, so that the build tree works as it is, and then here.
include(GNUInstallDirs)

set(NTK_INSTALL_WORKERDIR ${CMAKE_INSTALL_LIBEXECDIR}/${PROJECT_NAME}) # what no user starts
set(NTK_WORKERS ${CMAKE_INSTALL_FULL_LIBEXECDIR}/${PROJECT_NAME})

file(RELATIVE_PATH NTK_PROGRAMS_TO_LIBRARIES ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
file(RELATIVE_PATH NTK_PROGRAMS_TO_WORKERS ${CMAKE_INSTALL_FULL_BINDIR} ${NTK_WORKERS})
file(RELATIVE_PATH NTK_WORKERS_TO_LIBRARIES ${NTK_WORKERS} ${CMAKE_INSTALL_FULL_LIBDIR})

# ntk_set_install_runpath(TARGET RUNPATH): where the installed file looks for the libraries. Nothing
# where the loader looks anyway: the system's directories need none.
function(ntk_set_install_runpath target runpath)
    if(NOT CMAKE_INSTALL_FULL_LIBDIR IN_LIST CMAKE_CXX_IMPLICIT_LINK_DIRECTORIES)
        set_target_properties(${target} PROPERTIES INSTALL_RPATH ${runpath})
    endif()
endfunction()
