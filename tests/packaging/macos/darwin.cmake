# A toolchain under which CMake takes this system for macOS, with the fakes beside this file as its
# tools. The environment says what they stand on: see the test that uses it.
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_VERSION 24.0.0)
set(CMAKE_SYSTEM_PROCESSOR arm64)
set(CMAKE_OSX_SYSROOT "$ENV{ORLIMO_HOMEBREW}/objects")
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)

set(tools ${CMAKE_CURRENT_LIST_DIR}/fakes)
foreach(language IN ITEMS C CXX OBJCXX)
    set(CMAKE_${language}_COMPILER ${tools}/clang++)
    set(CMAKE_${language}_COMPILER_WORKS TRUE)
endforeach()
set(CMAKE_AR "$ENV{ORLIMO_AR}")
set(CMAKE_RANLIB "$ENV{ORLIMO_RANLIB}")
set(CMAKE_OTOOL ${tools}/otool)
set(CMAKE_INSTALL_NAME_TOOL ${tools}/install_name_tool)

# What Homebrew does not have is looked for where this system has it; the library of a Mac's windows is none
# of its.
set(CMAKE_LIBRARY_ARCHITECTURE "$ENV{ORLIMO_LIBRARY_ARCHITECTURE}")
set(CMAKE_PROJECT_INCLUDE ${CMAKE_CURRENT_LIST_DIR}/afterProject.cmake)
