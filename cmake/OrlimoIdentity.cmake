# Who the program is, in one header for the whole tree.
set(ORLIMO_IDENTIFIER "app.orlimo.Orlimo")
# When the version that the project names was released, or is to be.
set(ORLIMO_RELEASE_DATE "2026-11-21")
set(ORLIMO_WEBSITE "https://orlimo.app/" CACHE STRING "The web page that \"Open website\" opens")
set(ORLIMO_COPYRIGHT "Copyright © 2026 The Orlimo developers")
configure_file(${PROJECT_SOURCE_DIR}/platform/ApplicationIdentity.h.in
    ${PROJECT_BINARY_DIR}/generated/platform/ApplicationIdentity.h @ONLY)
target_include_directories(orlimo_options INTERFACE ${PROJECT_BINARY_DIR}/generated)
