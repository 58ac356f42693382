# Package g++-mingw-w64-x86-64-win32.
set(CMAKE_SYSTEM_PROCESSOR x86_64)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake)
