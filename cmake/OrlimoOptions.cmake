# One INTERFACE target carries the language standard, the warnings and the sanitizers, so that every
# target of the tree is compiled alike. Packagers get the warnings without the errors.
option(ORLIMO_WARNINGS_AS_ERRORS "Treat compiler warnings as errors" OFF)
set(ORLIMO_SANITIZERS "" CACHE STRING "Sanitizers to build with, as -fsanitize takes them")

# Where the sources are, as seen from the folder in which the compiler runs: how a compiler's cache names them.
file(RELATIVE_PATH orlimo_relative_source_dir "${PROJECT_BINARY_DIR}" "${PROJECT_SOURCE_DIR}/")

add_library(orlimo_options INTERFACE)
target_compile_features(orlimo_options INTERFACE cxx_std_20)
target_include_directories(orlimo_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(orlimo_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
    -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wcast-qual -Wformat=2 -Wundef
    -Wimplicit-fallthrough -Wextra-semi
    # What the program prints about itself names its sources, never the folder they were built in.
    "-fmacro-prefix-map=${PROJECT_SOURCE_DIR}/="
    "-fmacro-prefix-map=${orlimo_relative_source_dir}="
    $<$<BOOL:${ORLIMO_WARNINGS_AS_ERRORS}>:-Werror>)
target_compile_definitions(orlimo_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_NO_URL_CAST_FROM_STRING
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_NO_FOREACH QT_DISABLE_DEPRECATED_BEFORE=0x060400)

if(ORLIMO_SANITIZERS)
    target_compile_options(orlimo_options INTERFACE
        -fsanitize=${ORLIMO_SANITIZERS} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(orlimo_options INTERFACE -fsanitize=${ORLIMO_SANITIZERS})
endif()

# The fuzzer sees which ways an input takes through what is compiled like this; needs clang.
option(ORLIMO_FUZZERS "Build the fuzzers in the place of the tests that replay their inputs" OFF)
if(ORLIMO_FUZZERS)
    target_compile_options(orlimo_options INTERFACE
        -fsanitize-coverage=inline-8bit-counters,indirect-calls,pc-table)
endif()
