# Run by CPack between installing and making the image: signs the bundle, with the identity in the
# environment's ORLIMO_SIGNING_IDENTITY or, where there is none, for this machine alone.
file(GLOB bundles
    "${CPACK_TEMPORARY_DIRECTORY}/*.app"
    "${CPACK_TEMPORARY_DIRECTORY}/*/*.app")
list(LENGTH bundles count)
if(NOT count EQUAL 1)
    message(FATAL_ERROR "One bundle is to be signed, not these: \"${bundles}\"")
endif()
if("$ENV{ORLIMO_SIGNING_IDENTITY}" STREQUAL "")
    set(how --ad-hoc)
else()
    set(how --identity "$ENV{ORLIMO_SIGNING_IDENTITY}")
endif()
execute_process(COMMAND "${CPACK_ORLIMO_SIGN}" ${how} ${bundles} COMMAND_ERROR_IS_FATAL ANY)
