# orlimo_mark_slow(PROGRAM pattern)
# Gives the tests of a program whose names match the label slow instead of the program's own: they are run
# with everything else only. After orlimo_add_tests, whose script of labels this one follows.
function(orlimo_mark_slow program pattern)
    set(script "${CMAKE_CURRENT_BINARY_DIR}/${program}_slow.cmake")
    file(CONFIGURE OUTPUT "${script}" @ONLY CONTENT [[
foreach(test IN LISTS @program@_list)
    if(test MATCHES "@pattern@")
        set_tests_properties("${test}" PROPERTIES LABELS slow)
    endif()
endforeach()
]])
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${script}")
endfunction()
