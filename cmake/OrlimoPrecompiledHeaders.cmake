# The headers that most sources include are compiled once and not for each of them. One library for each
# set of compiler options holds them; targets that are compiled alike use them from there.
option(ORLIMO_PRECOMPILED_HEADERS "Compile the most used headers once" ON)
if(ORLIMO_PRECOMPILED_HEADERS)
    # What a compiler's cache needs to keep what was compiled with them.
    target_compile_options(orlimo_options INTERFACE
        $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>
        "$<$<CXX_COMPILER_ID:Clang,AppleClang>:SHELL:-Xclang -fno-pch-timestamp>")
endif()

# orlimo_add_precompiled_headers(NAME HEADER library...)
function(orlimo_add_precompiled_headers name header)
    if(NOT ORLIMO_PRECOMPILED_HEADERS)
        return()
    endif()
    file(GENERATE OUTPUT "${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp" CONTENT "")
    add_library(${name} OBJECT "${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp")
    target_link_libraries(${name} PRIVATE orlimo_options ${ARGN})
    target_precompile_headers(${name} PRIVATE "${PROJECT_SOURCE_DIR}/${header}")
endfunction()

# orlimo_precompile(TARGET NAME)
function(orlimo_precompile target name)
    get_target_property(sources ${target} SOURCES)
    # They are of one language.
    if(ORLIMO_PRECOMPILED_HEADERS AND NOT sources MATCHES "\\.mm(;|$)")
        target_precompile_headers(${target} REUSE_FROM ${name})
    endif()
endfunction()
