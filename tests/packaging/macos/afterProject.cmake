# Qt asks for the system's way of drawing in three dimensions, which nothing here uses.
if(NOT TARGET WrapOpenGL::WrapOpenGL)
    add_library(WrapOpenGL::WrapOpenGL INTERFACE IMPORTED)
endif()
