# What all targets of the tree share: warnings, sanitizers, include root, and the one way to add a test.

option(TESSARINE_SANITIZE_THREADS "Build with ThreadSanitizer, which excludes the others" OFF)
option(TESSARINE_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
option(TESSARINE_FUZZ "Build the fuzzers; needs clang" OFF)

add_library(tessarine_flags INTERFACE)
target_compile_options(tessarine_flags INTERFACE -Wall -Wextra -Wpedantic -Wshadow)
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    target_compile_options(tessarine_flags INTERFACE
        -Wno-gnu-zero-variadic-macro-arguments) # Qt's qCDebug()
endif()
target_compile_definitions(tessarine_flags INTERFACE
    QT_NO_CAST_TO_ASCII QT_DEPRECATED_WARNINGS QT_MESSAGELOGCONTEXT)
target_include_directories(tessarine_flags INTERFACE "${CMAKE_SOURCE_DIR}")
if(TESSARINE_SANITIZE_THREADS)
    target_compile_options(tessarine_flags INTERFACE -fsanitize=thread -fno-omit-frame-pointer)
    target_link_options(tessarine_flags INTERFACE -fsanitize=thread)
endif()
if(TESSARINE_SANITIZE)
    target_compile_options(tessarine_flags INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    target_link_options(tessarine_flags INTERFACE -fsanitize=address,undefined)
endif()
if(TESSARINE_FUZZ)
    target_compile_options(tessarine_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()

# tessarine_library(<name> SOURCES ... LINK ...): one static library a folder.
function(tessarine_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
    add_library(tessarine_${name} STATIC ${ARG_SOURCES})
    target_link_libraries(tessarine_${name} PUBLIC tessarine_flags ${ARG_LINK})
endfunction()

# tessarine_test(<class> LINK ... [SECONDS n]): builds tst_<class>.cpp of the current folder and adds it
# to CTest with a fixed environment, so that a run depends on nothing that the user's session holds. SECONDS
# ends a test that hangs; it is far above what a test takes on a machine that does twenty other things.
function(tessarine_test class)
    cmake_parse_arguments(ARG "" "SECONDS" "SOURCES;LINK;DEFINITIONS" ${ARGN})
    if(NOT ARG_SECONDS)
        set(ARG_SECONDS 1200)
    endif()
    add_executable(tst_${class} tst_${class}.cpp ${ARG_SOURCES})
    target_link_libraries(tst_${class} PRIVATE tessarine_flags ${ARG_LINK} Qt5::Test)
    target_compile_definitions(tst_${class} PRIVATE ${ARG_DEFINITIONS}
        TESSARINE_FIXTURES="${CMAKE_SOURCE_DIR}/tests/fixtures"
        TESSARINE_EXAMPLES="${CMAKE_SOURCE_DIR}/examples")
    add_test(NAME ${class} COMMAND tst_${class})
    math(EXPR milliseconds "${ARG_SECONDS} * 1000") # Qt ends a single function after five minutes
    get_filename_component(label "${CMAKE_CURRENT_SOURCE_DIR}" NAME)
    set_tests_properties(${class} PROPERTIES
        LABELS "${label}"
        TIMEOUT ${ARG_SECONDS}
        ENVIRONMENT "QT_HASH_SEED=0;LC_ALL=C;TZ=UTC;QTEST_FUNCTION_TIMEOUT=${milliseconds}")
endfunction()
