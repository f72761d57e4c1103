# cmake -DOUTPUT=FILE -D<name>=FILE|FILE... -P embed.cmake: writes a C++ file in which each name is
# the text of its files, one behind the other.
set(source "#include \"assets.h\"\n\nnamespace report {\n")
foreach(name IN ITEMS pageHtml pageCss pageScript chartScript)
    string(REPLACE "|" ";" files "${${name}}")
    set(bytes)
    foreach(file IN LISTS files)
        file(READ ${file} content HEX)
        string(APPEND bytes ${content})
    endforeach()
    string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," bytes "${bytes}")
    string(APPEND source "\nstatic const char ${name}Bytes[] = {${bytes}};\n"
        "const std::string_view ${name}(${name}Bytes, sizeof ${name}Bytes);\n")
endforeach()
string(APPEND source "\n} // namespace report\n")
file(WRITE ${OUTPUT} "${source}")
