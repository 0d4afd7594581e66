# What makes mistakes in the program harder to exploit, in every build that is not for finding them: a
# sanitizer does its own checking. It holds for the directories that are added after it; tests/ takes it
# back.
if(ORLIMO_SANITIZERS)
    return()
endif()

add_compile_options(-fstack-protector-strong)
if(APPLE)
    # What else there is, that system's compiler and linker do unasked.
    return()
endif()

include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

add_compile_options(-fstack-clash-protection)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|amd64|i.86)$")
    add_compile_options(-fcf-protection=full)
elseif(CMAKE_SYSTEM_PROCESSOR MATCHES "^(aarch64|arm64)$")
    add_compile_options(-mbranch-protection=standard)
endif()
# The C library checks sizes where it knows them, which takes an optimiser. Taken back first, for some
# compilers come with a weaker default of their own.
add_compile_options("$<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=3>")
# An index beyond the end, or an optional without a value, ends the program instead of reading on.
add_compile_definitions(_GLIBCXX_ASSERTIONS)
add_link_options(LINKER:-z,relro LINKER:-z,now LINKER:-z,noexecstack LINKER:--as-needed)
