# Shared by both toolchains of Debian's cross compiler; the including file sets the processor.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_CXX_COMPILER ${CMAKE_SYSTEM_PROCESSOR}-w64-mingw32-g++-win32)
set(CMAKE_DLLTOOL ${CMAKE_SYSTEM_PROCESSOR}-w64-mingw32-dlltool)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
