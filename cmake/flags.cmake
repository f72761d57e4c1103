# Warnings for every target; errors only where the preset asks for it.
add_compile_options(-Wall -Wextra -Wpedantic -Wshadow)
# gcc 12 takes "text" + std::string for an overlapping copy (its bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    add_compile_options(-Wno-restrict)
endif()
if(NTK_WERROR)
    add_compile_options(-Werror)
endif()

if(NTK_SANITIZE)
    # A finding ends the program: only then does it fail a test.
    add_compile_options(-fsanitize=${NTK_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${NTK_SANITIZE})
endif()

# A run path that the loader's path (LD_LIBRARY_PATH) goes before: another build of the measured
# library replaces ours without rebuilding the program.
add_link_options(-Wl,--enable-new-dtags)
