# One run of the tool for tessarine_generate(): in a fresh folder, so that what is there afterwards is what
# the project needs; then what changed goes to the output folder. Called as a script with SETTINGS.
cmake_minimum_required(VERSION 3.21)
include("${SETTINGS}")

set(state "${output}/.tessarine")
set(folder "${state}/run")

function(run_tool)
    cmake_path(GET project FILENAME name)
    set(command "${tool}" -project "${folder}/${name}")
    if(import)
        list(APPEND command -import "${import}")
    endif()
    if(modifier)
        list(APPEND command -dbmod "${modifier}")
    endif()
    execute_process(COMMAND ${command} WORKING_DIRECTORY "${folder}"
        RESULT_VARIABLE result OUTPUT_VARIABLE lines ERROR_VARIABLE lines)
    file(WRITE "${state}/log.txt" "${lines}")
    # A file that could not be written leaves the exit code of the tool at 0, but the build has no use for
    # the rest.
    if(NOT result STREQUAL "0" OR lines MATCHES "(^|\n)ERROR - Generation of ")
        message("${lines}")
        message(FATAL_ERROR "No sources from ${project}: tessarine ended with ${result}")
    endif()
    string(REPLACE ";" "\\;" lines "${lines}")
    string(REGEX MATCHALL "(^|\n)[^\n]*Warning[^\n]*" warnings "${lines}")
    if(warnings)
        list(JOIN warnings "" warnings)
        string(STRIP "${warnings}" warnings)
        message("${warnings}")
    endif()
endfunction()

# The text of a generated C file but for the line with the date of its making. Other lines with a date are
# the project's own.
function(read_undated path result)
    set(text "")
    if(EXISTS "${path}")
        file(READ "${path}" text)
        string(REGEX REPLACE "\n \\* [A-Z][a-z][a-z] [A-Z][a-z][a-z] +[0-9]+ [0-9:]+ [0-9]+(\r?\n)" "\\1" text
            "${text}")
    endif()
    set(${result} "${text}" PARENT_SCOPE)
endfunction()

function(take_over name)
    if(name MATCHES "\\.[ch]$")
        read_undated("${folder}/${name}" new)
        read_undated("${output}/${name}" old)
        if(new STREQUAL old)
            return()
        endif()
    endif()
    cmake_path(GET name PARENT_PATH parent)
    file(MAKE_DIRECTORY "${output}/${parent}")
    file(COPY_FILE "${folder}/${name}" "${output}/${name}" ONLY_IF_DIFFERENT)
endfunction()

# The target compiles and includes these, whatever the project needs.
function(write_missing_files)
    foreach(name IN LISTS expected)
        if(EXISTS "${folder}/${name}")
            continue()
        endif()
        set(text "/* This project needs no ${name}. */\n")
        if(name MATCHES "(.*)\\.c$") # C forbids a source without any declaration
            string(APPEND text "typedef int tessarine_without_${CMAKE_MATCH_1};\n")
        endif()
        file(WRITE "${folder}/${name}" "${text}")
    endforeach()
endfunction()

file(REMOVE_RECURSE "${folder}")
file(COPY "${project}" ${companions} DESTINATION "${folder}" NO_SOURCE_PERMISSIONS)
run_tool()
write_missing_files()

file(GLOB_RECURSE names RELATIVE "${folder}" "${folder}/*")
foreach(name IN LISTS names)
    take_over("${name}")
endforeach()

# Of the files that were here before, those of this function only.
set(former "")
if(EXISTS "${state}/files.txt")
    file(STRINGS "${state}/files.txt" former ENCODING UTF-8)
endif()
list(REMOVE_ITEM former ${names})
foreach(name IN LISTS former)
    file(REMOVE "${output}/${name}")
endforeach()
list(JOIN names "\n" names)
file(WRITE "${state}/files.txt" "${names}\n")
file(TOUCH "${state}/stamp")
