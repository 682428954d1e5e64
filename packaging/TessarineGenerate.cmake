# tessarine_generate(TARGET <target> PROJECT <file> [IMPORT <file>] [MODIFIER <file>] [OUTPUT_DIR <dir>])
#
# Adds the C sources that follow from a project to a target. The tool runs during the build, on a copy of
# the project in the build tree, whenever the project, the import or the modifier file changed; sources
# that come out the same keep their time stamps. The target's include path leads to OUTPUT_DIR, by default
# tessarine/<target> in the current binary folder; so does that of what links a library.
#
# Which files a project needs is known only when the tool runs, while a build must know its sources before.
# So the target has all that there are, and those that the project does not need say just that.

function(tessarine_generate)
    cmake_parse_arguments(PARSE_ARGV 0 ARG "" "TARGET;PROJECT;IMPORT;MODIFIER;OUTPUT_DIR" "")
    _tessarine_check_arguments()

    set(output "${ARG_OUTPUT_DIR}")
    if(NOT output)
        set(output "tessarine/${ARG_TARGET}")
    endif()
    cmake_path(ABSOLUTE_PATH output BASE_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}" NORMALIZE)
    foreach(input IN ITEMS PROJECT IMPORT MODIFIER)
        if(ARG_${input})
            cmake_path(ABSOLUTE_PATH ARG_${input} NORMALIZE)
            cmake_path(GET ARG_${input} PARENT_PATH folder)
            if("${folder}" STREQUAL "${output}")
                message(FATAL_ERROR "tessarine_generate: OUTPUT_DIR must not be the folder of ${ARG_${input}}")
            endif()
            list(APPEND inputs "${ARG_${input}}")
        endif()
    endforeach()

    # What the tool reads beside the project: the user's sections, and whether the last one is there.
    cmake_path(GET ARG_PROJECT PARENT_PATH folder)
    set(companions "")
    foreach(name IN ITEMS gen_define.h j1939_adapter.c no_stdlib_include.txt)
        if(EXISTS "${folder}/${name}")
            list(APPEND companions "${folder}/${name}")
        endif()
    endforeach()

    set(sources gen_j1939_adapter.c gen_mp.c gen_objdict.c gen_pgn.c gen_rawcan.c gen_sdg.c gen_srdo.c
        gen_var_decl.c gen_vobjdict.c j1939_adapter.c)
    set(headers gen_define.h gen_extern_decl.h gen_indication.h gen_indices.h gen_user.h)
    set(state "${output}/.tessarine")
    # A file, so that other arguments are a change that leads to a run.
    file(GENERATE OUTPUT "${state}/settings.cmake" CONTENT "set(tool [==[$<TARGET_FILE:Tessarine::tessarine>]==])
set(project [==[${ARG_PROJECT}]==])
set(import [==[${ARG_IMPORT}]==])
set(modifier [==[${ARG_MODIFIER}]==])
set(companions [==[${companions}]==])
set(output [==[${output}]==])
set(expected [==[${sources};${headers}]==])
")

    set(files ${sources} ${headers})
    list(TRANSFORM files PREPEND "${output}/")
    cmake_path(GET ARG_PROJECT FILENAME name)
    set(run "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/TessarineRun.cmake")
    add_custom_command(
        OUTPUT "${state}/stamp"
        BYPRODUCTS ${files}
        COMMAND "${CMAKE_COMMAND}" "-DSETTINGS=${state}/settings.cmake" -P "${run}"
        DEPENDS ${inputs} ${companions} "${state}/settings.cmake" "${run}" Tessarine::tessarine
        COMMENT "Generating C sources from ${name}"
        VERBATIM)
    add_custom_target(${ARG_TARGET}_tessarine DEPENDS "${state}/stamp")
    add_dependencies(${ARG_TARGET} ${ARG_TARGET}_tessarine)
    target_sources(${ARG_TARGET} PRIVATE ${files})

    get_target_property(type ${ARG_TARGET} TYPE)
    set(scope PUBLIC)
    if(type STREQUAL "EXECUTABLE")
        set(scope PRIVATE)
    endif()
    # Before the rest: the folder of the project may hold files of a run by hand.
    target_include_directories(${ARG_TARGET} BEFORE ${scope} "$<BUILD_INTERFACE:${output}>")
endfunction()

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
    if(NOT CMAKE_C_COMPILER_LOADED)
        message(FATAL_ERROR "tessarine_generate: the generated sources need the language C")
    endif()
endmacro()
