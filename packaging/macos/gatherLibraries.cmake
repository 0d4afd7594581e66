# Brings into the bundle ORLIMO_BUNDLE every library that its program and those of its files that
# ORLIMO_PLUGINS names refer to and that is not part of macOS, and has all of them refer to each other where
# they lie then. Libraries that others name without their folder are looked for in ORLIMO_LIBRARY_FOLDERS.
# Fails when one is not found. What was changed has to be signed anew. Included at the end of an installation.
cmake_policy(VERSION 3.25)
# The bundle is for macOS, whichever system completes it.
set(APPLE TRUE)
include(BundleUtilities)

# Homebrew's files are nobody's to write to, and neither are copies of them.
set(BU_CHMOD_BUNDLE_ITEMS ON)
list(TRANSFORM ORLIMO_PLUGINS PREPEND ${ORLIMO_BUNDLE}/Contents/ OUTPUT_VARIABLE plugins)
fixup_bundle("${ORLIMO_BUNDLE}" "${plugins}" "${ORLIMO_LIBRARY_FOLDERS}")
