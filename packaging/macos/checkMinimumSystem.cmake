# Fails when a file in the bundle ORLIMO_BUNDLE was made for a later macOS than the one for which the bundle's
# Info.plist says that it is: the older system would not load it. Included at the end of an installation.
cmake_policy(VERSION 3.25)
find_program(ORLIMO_OTOOL otool REQUIRED)
find_program(ORLIMO_LIPO lipo REQUIRED)

# The oldest macOS that the code in a file for one processor is for, 0 when it does not say. Before macOS
# 10.14 the command was another.
function(get_minimum_system file variable)
    execute_process(COMMAND "${ORLIMO_OTOOL}" -l "${file}" OUTPUT_VARIABLE commands COMMAND_ERROR_IS_FATAL ANY)
    # Tools differ in the order of what follows the command.
    if(commands MATCHES "cmd LC_BUILD_VERSION\n *cmdsize[^\n]+\n *platform[^\n]+\n( *sdk[^\n]+\n)? *minos ([0-9.]+)")
        set(${variable} ${CMAKE_MATCH_2} PARENT_SCOPE)
    elseif(commands MATCHES "cmd LC_VERSION_MIN_MACOSX\n *cmdsize[^\n]+\n *version ([0-9.]+)")
        set(${variable} ${CMAKE_MATCH_1} PARENT_SCOPE)
    else()
        set(${variable} 0 PARENT_SCOPE)
    endif()
endfunction()

# The same for a universal file, which has a part for each processor: the latest of them.
function(get_minimum_system_of_universal file variable)
    execute_process(COMMAND "${ORLIMO_LIPO}" -archs "${file}"
        OUTPUT_VARIABLE processors OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    string(REPLACE " " ";" processors "${processors}")
    set(latest 0)
    foreach(processor IN LISTS processors)
        set(part "${ORLIMO_BUNDLE}.${processor}")
        execute_process(COMMAND "${ORLIMO_LIPO}" "${file}" -thin ${processor} -output "${part}"
            COMMAND_ERROR_IS_FATAL ANY)
        get_minimum_system("${part}" needed)
        file(REMOVE "${part}")
        if(needed VERSION_GREATER latest)
            set(latest ${needed})
        endif()
    endforeach()
    set(${variable} ${latest} PARENT_SCOPE)
endfunction()

file(READ "${ORLIMO_BUNDLE}/Contents/Info.plist" list)
if(NOT list MATCHES "<key>LSMinimumSystemVersion</key>[ \t\r\n]*<string>([0-9.]+)</string>")
    message(FATAL_ERROR "${ORLIMO_BUNDLE} does not say which macOS it is for")
endif()
set(promised ${CMAKE_MATCH_1})

set(later "")
file(GLOB_RECURSE files RELATIVE "${ORLIMO_BUNDLE}/Contents" "${ORLIMO_BUNDLE}/Contents/*")
foreach(file IN LISTS files)
    set(path "${ORLIMO_BUNDLE}/Contents/${file}")
    # Links may lead to folders, which cannot be read.
    if(IS_SYMLINK "${path}")
        continue()
    endif()
    file(READ "${path}" magic LIMIT 4 HEX)
    if(magic MATCHES "^cafebab[ef]$")
        get_minimum_system_of_universal("${path}" needed)
    elseif(magic MATCHES "^c[ef]faedfe$")
        get_minimum_system("${path}" needed)
    else()
        continue()
    endif()
    if(needed VERSION_GREATER promised)
        string(APPEND later "  ${file} needs macOS ${needed}\n")
    endif()
endforeach()

if(later)
    message(FATAL_ERROR "The bundle says that it is for macOS ${promised}, and would not start there:\n${later}"
        "Make it on macOS ${promised}, or for the later system: "
        "packaging/macos/dmg --minimum-system VERSION, or -DCMAKE_OSX_DEPLOYMENT_TARGET=VERSION.")
endif()
