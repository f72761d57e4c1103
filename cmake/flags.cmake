# Warnings for every target; errors only where the preset asks for it.
add_compile_options(-Wall -Wextra -Wpedantic -Wshadow)
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
