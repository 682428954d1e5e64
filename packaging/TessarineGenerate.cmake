# tessarine_generate(TARGET <target> PROJECT <file> [IMPORT [<line>:]<file>...] [IMPORT_NODE <name>]
#     [MODIFIER <file>] [SET <key>=<value>...] [OUTPUT_DIR <dir>] [REPORT <file>] [OVERVIEW <file>] [CHECK_ONLY]
#     [NO_COMMANDS])
#
# Adds the C sources that follow from a project to a target. The tool runs during the build, and writes into
# the build tree, whenever a file that it reads changed or one that the target needs is gone; sources that
# come out the same keep their time stamps. With CHECK_ONLY it checks the project before the target is built,
# and adds nothing to it. The target's include path leads to OUTPUT_DIR, by default
# tessarine/<target> in the current binary folder; so does that of what links a library.
#
# Which files a project needs is known only when the tool runs, while a build must know its sources before.
# So the target has all that there are, and those that the project does not need say just that.

cmake_policy(PUSH)
cmake_policy(SET CMP0116 NEW) # names in DEPFILE are those of the folder of the caller

function(tessarine_generate)
    cmake_parse_arguments(PARSE_ARGV 0 ARG "CHECK_ONLY;NO_COMMANDS"
        "TARGET;PROJECT;IMPORT_NODE;MODIFIER;OUTPUT_DIR;REPORT;OVERVIEW" "IMPORT;SET")
    _tessarine_check_arguments()

    set(output "${ARG_OUTPUT_DIR}")
    if(NOT output)
        set(output "tessarine/${ARG_TARGET}")
    endif()
    cmake_path(ABSOLUTE_PATH output BASE_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}" NORMALIZE)
    foreach(input IN ITEMS PROJECT MODIFIER)
        if(ARG_${input})
            cmake_path(ABSOLUTE_PATH ARG_${input} NORMALIZE)
            list(APPEND inputs "${ARG_${input}}")
        endif()
    endforeach()
    set(imports "")
    foreach(import IN LISTS ARG_IMPORT)
        _tessarine_split_import("${import}")
        list(APPEND imports "${line}${file}${line_of_file}")
        list(APPEND inputs "${file}")
    endforeach()
    foreach(input IN LISTS inputs)
        cmake_path(GET input PARENT_PATH folder)
        if("${folder}" STREQUAL "${output}")
            message(FATAL_ERROR "tessarine_generate: OUTPUT_DIR must not be the folder of ${input}")
        endif()
    endforeach()

    # The user's sections beside the project.
    cmake_path(GET ARG_PROJECT PARENT_PATH folder)
    set(companions "")
    foreach(name IN ITEMS gen_define.h j1939_adapter.c)
        if(EXISTS "${folder}/${name}")
            list(APPEND companions "${folder}/${name}")
        endif()
    endforeach()

    set(sources gen_j1939_adapter.c gen_mp.c gen_objdict.c gen_pgn.c gen_rawcan.c gen_sdg.c gen_srdo.c
        gen_var_decl.c gen_vobjdict.c j1939_adapter.c)
    set(headers gen_define.h gen_extern_decl.h gen_indication.h gen_indices.h gen_user.h)
    if(ARG_CHECK_ONLY)
        set(sources "")
        set(headers "")
    endif()
    foreach(file IN ITEMS REPORT OVERVIEW)
        if(ARG_${file})
            cmake_path(ABSOLUTE_PATH ARG_${file} BASE_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}" NORMALIZE)
        endif()
    endforeach()
    set(ninja FALSE)
    set(unnamable "")
    if(CMAKE_GENERATOR MATCHES "Ninja")
        set(ninja TRUE)
        set(unnamable "[#$:'\"&;*?<>|^`]") # it takes names with one of these for others in a dependency file
    endif()
    set(state "${output}/.tessarine")
    # A file, so that other arguments are a change that leads to a run.
    file(GENERATE OUTPUT "${state}/settings.cmake" CONTENT "set(tool [==[$<TARGET_FILE:Tessarine::tessarine>]==])
set(root [==[${CMAKE_SOURCE_DIR}]==])
set(project [==[${ARG_PROJECT}]==])
set(imports [==[${imports}]==])
set(import_node [==[${ARG_IMPORT_NODE}]==])
set(modifier [==[${ARG_MODIFIER}]==])
set(values [==[${ARG_SET}]==])
set(report [==[${ARG_REPORT}]==])
set(overview [==[${ARG_OVERVIEW}]==])
set(check_only [==[${ARG_CHECK_ONLY}]==])
set(no_commands [==[${ARG_NO_COMMANDS}]==])
set(ninja ${ninja})
set(unnamable [==[${unnamable}]==])
set(companions [==[${companions}]==])
set(output [==[${output}]==])
set(expected [==[${sources};${headers}]==])
")

    set(files "")
    foreach(file IN LISTS sources headers)
        list(APPEND files "${output}/${file}")
    endforeach()
    cmake_path(GET ARG_PROJECT FILENAME name)
    set(run "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/TessarineRun.cmake")
    set(verb "Generating C sources from")
    if(ARG_CHECK_ONLY)
        set(verb "Checking")
    endif()
    # What else the tool reads, it tells itself.
    set(depfile "")
    if(CMAKE_GENERATOR MATCHES "Ninja|Makefiles" AND NOT (ninja AND output MATCHES "${unnamable}"))
        set(depfile DEPFILE "${state}/depends.d")
    endif()
    add_custom_command(
        OUTPUT "${state}/stamp"
        BYPRODUCTS ${files} ${ARG_REPORT} ${ARG_OVERVIEW}
        COMMAND "${CMAKE_COMMAND}" "-DSETTINGS=${state}/settings.cmake" -P "${run}"
        DEPENDS ${inputs} ${companions} "${state}/settings.cmake" "${run}" Tessarine::tessarine
        ${depfile}
        COMMENT "${verb} ${name}"
        VERBATIM)
    add_custom_target(${ARG_TARGET}_tessarine DEPENDS "${state}/stamp")
    add_dependencies(${ARG_TARGET} ${ARG_TARGET}_tessarine)
    if(ARG_CHECK_ONLY)
        return()
    endif()
    target_sources(${ARG_TARGET} PRIVATE ${files})

    get_target_property(type ${ARG_TARGET} TYPE)
    set(scope PUBLIC)
    if(type STREQUAL "EXECUTABLE")
        set(scope PRIVATE)
    endif()
    # Before the rest: the folder of the project may hold files of a run by hand.
    target_include_directories(${ARG_TARGET} BEFORE ${scope} "$<BUILD_INTERFACE:${output}>")
endfunction()

cmake_policy(POP)

# Takes "<line>:<file>#<line of the file>" apart; the file becomes absolute.
macro(_tessarine_split_import import)
    string(REGEX MATCH "^[0-9]+:" line "${import}")
    string(LENGTH "${line}" length)
    string(SUBSTRING "${import}" ${length} -1 file)
    set(line_of_file "")
    cmake_path(ABSOLUTE_PATH file NORMALIZE)
    if(NOT EXISTS "${file}" AND file MATCHES "^(.*)(#[0-9]+)$")
        set(file "${CMAKE_MATCH_1}")
        set(line_of_file "${CMAKE_MATCH_2}")
    endif()
endmacro()

# The arguments of tessarine_generate(), in its variables ARG_...
macro(_tessarine_check_arguments)
    if(ARG_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "tessarine_generate: unknown argument: ${ARG_UNPARSED_ARGUMENTS}")
    endif()
    foreach(needed IN ITEMS TARGET PROJECT)
        if(NOT ARG_${needed})
            message(FATAL_ERROR "tessarine_generate: ${needed} is missing")
        endif()
    endforeach()
    if(NOT TARGET ${ARG_TARGET})
        message(FATAL_ERROR "tessarine_generate: no such target: ${ARG_TARGET}")
    endif()
    if(TARGET ${ARG_TARGET}_tessarine)
        message(FATAL_ERROR "tessarine_generate: ${ARG_TARGET} has a project already")
    endif()
    if(NOT ARG_CHECK_ONLY AND NOT CMAKE_C_COMPILER_LOADED)
        message(FATAL_ERROR "tessarine_generate: the generated sources need the language C")
    endif()
endmacro()
