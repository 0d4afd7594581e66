# Run by CPack on the installed tree before it becomes a package: gives the tree the form that Debian
# asks for, the program stripped, the licence in the copyright file, the manual page and the changelog
# packed.
set(tree "${CPACK_TEMPORARY_DIRECTORY}${CPACK_PACKAGING_INSTALL_PREFIX}")
set(documents "${tree}/share/doc/orlimo")

file(REMOVE "${documents}/LICENSE")
file(COPY_FILE "${CPACK_ORLIMO_COPYRIGHT}" "${documents}/copyright")
file(COPY_FILE "${CPACK_ORLIMO_CHANGELOG}" "${documents}/changelog")
file(CHMOD "${documents}/copyright" "${documents}/changelog"
    PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
execute_process(
    COMMAND gzip --best --no-name "${documents}/changelog" "${tree}/share/man/man1/orlimo.1"
    COMMAND_ERROR_IS_FATAL ANY)
execute_process(
    COMMAND "${CPACK_ORLIMO_STRIP}" --remove-section=.comment --remove-section=.note "${tree}/bin/orlimo"
    COMMAND_ERROR_IS_FATAL ANY)
