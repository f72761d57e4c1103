# ntk_forwarded_functions(FILE [NAME...]): writes FORWARD(name) in a line for every function that
# the library's headers declare, but for those named, for libraries that stand before the own one.
# (A change of the headers configures anew: perf/ sees to it.)
function(ntk_forwarded_functions file)
    file(GLOB headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/ntk/include/ntkdc*.h)
    foreach(header IN LISTS headers)
        file(STRINGS ${header} declared REGEX "^NTK_API [^(]*[ *][A-Za-z0-9_]+\\(")
        list(APPEND functions ${declared})
    endforeach()
    list(TRANSFORM functions REPLACE "^NTK_API [^(]*[ *]([A-Za-z0-9_]+)\\(.*" "FORWARD(\\1)")
    foreach(name IN LISTS ARGN)
        list(REMOVE_ITEM functions "FORWARD(${name})")
    endforeach()
    list(JOIN functions "\n" functions)
    file(CONFIGURE OUTPUT ${file} CONTENT "${functions}\n")
endfunction()

# ntk_name_as_own(TARGET): the shared library gets the file name of the own libntkdc, version
# included, so that the loader takes it in its place.
function(ntk_name_as_own target)
    get_target_property(version ntkdc VERSION)
    get_target_property(soversion ntkdc SOVERSION)
    set_target_properties(${target} PROPERTIES
        OUTPUT_NAME ntkdc VERSION ${version} SOVERSION ${soversion})
endfunction()
