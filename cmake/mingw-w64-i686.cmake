# Package g++-mingw-w64-i686-win32.
set(CMAKE_SYSTEM_PROCESSOR i686)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake)
