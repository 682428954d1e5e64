# Writes a header with the names of the styles and scripts of the page, and the hashes by which its policy knows
# them. Run by the build, in the folder of these files:
# cmake -D OUTPUT=<header> -D "STYLES=<file>;..." -D "SCRIPTS=<file>;..." -P parts.cmake
set(header "")
foreach(part Style Script)
    string(TOUPPER ${part}S list)
    set(names "")
    set(text "")
    foreach(name IN LISTS ${list})
        file(READ ${name} content)
        string(APPEND text "${content}")
        string(APPEND names "\"${name}\", ")
    endforeach()
    string(SHA256 hash "${text}")
    string(APPEND header "constexpr const char *k${part}s[] = {${names}};\n"
        "constexpr char k${part}Sha256[] = \"${hash}\"; // of all together\n")
endforeach()
file(WRITE ${OUTPUT} "${header}")
