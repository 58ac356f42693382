# Writes the files beside this one as C++ constants, with the checksums that the page's own security policy names:
# cmake -D OUTPUT=page_files.cc -P embed.cmake
set(text "// Made of the files in kit/page by the build.\n#include \"kit/page/files.h\"\n\nnamespace cubekit {\n\n")
foreach(name page.html picture.html page.css page.js)
  file(READ ${CMAKE_CURRENT_LIST_DIR}/${name} content)
  file(SHA256 ${CMAKE_CURRENT_LIST_DIR}/${name} checksum)
  string(REPLACE . _ constant ${name})
  string(APPEND text "const PageFile ${constant}{R\"file(${content})file\", \"${checksum}\"};\n")
endforeach()
string(APPEND text "\n} // namespace cubekit\n")
file(WRITE ${OUTPUT} "${text}")
