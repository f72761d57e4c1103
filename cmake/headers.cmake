# ntk_check_headers(TARGET HEADER...): compiles each header alone, with the usage requirements of
# TARGET, so that no header leans on what another one happens to include.
function(ntk_check_headers target)
    if(NTK_SANITIZE) # a check of the sources, which the builds without have made
        return()
    endif()
    set(sources)
    foreach(header ${ARGN})
        get_filename_component(name ${header} NAME_WE)
        set(source ${CMAKE_CURRENT_BINARY_DIR}/headers/${name}.cpp)
        get_filename_component(path ${header} ABSOLUTE)
        file(GENERATE OUTPUT ${source} CONTENT "#include \"${path}\"\n#include \"${path}\"\n")
        list(APPEND sources ${source})
    endforeach()
    add_library(${target}_headers OBJECT ${sources})
    target_link_libraries(${target}_headers PRIVATE ${target})
endfunction()
