# Installation paths, and the packages that scripts/package builds.
include(GNUInstallDirs)

install(TARGETS cubenet RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
set(manuals cubenet.1 tt2.5 nxf.5 ddf.5 tvx.5)
set(completions cubenet)
if(CUBENET_KIT)
  install(TARGETS cubekit RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  list(APPEND manuals cubekit.1)
  list(APPEND completions cubekit)
endif()

foreach(manual IN LISTS manuals)
  string(REGEX REPLACE ".*\\." "" section ${manual})
  install(FILES docs/man/${manual} DESTINATION ${CMAKE_INSTALL_MANDIR}/man${section})
endforeach()
# Debian packages get a separate folder.
if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  set(zsh_functions vendor-completions)
else()
  set(zsh_functions site-functions)
endif()
foreach(program IN LISTS completions)
  install(FILES scripts/completion/${program}.bash RENAME ${program}
          DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
  install(FILES scripts/completion/_${program} DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/${zsh_functions})
endforeach()
include(CMakePackageConfigHelpers)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/cubenet-config-version.cmake COMPATIBILITY SameMajorVersion
                                 ARCH_INDEPENDENT)
install(FILES cmake/cubenet-config.cmake ${CMAKE_BINARY_DIR}/cubenet-config-version.cmake
        DESTINATION ${CMAKE_INSTALL_DATADIR}/cmake/cubenet)
install(FILES README.md CHANGELOG.md CONTRIBUTING.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES LICENSE RENAME copyright DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR} PATTERN man EXCLUDE)
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR} FILES_MATCHING PATTERN "*.tt2")

set(CPACK_PACKAGE_NAME cubenet)
set(CPACK_PACKAGE_CONTACT "The cubenet maintainers <maintainers@cubenet.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "translator from PLA truth tables to gate-level netlists")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_GENERATOR DEB)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "graphviz, berkeley-abc")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "cubenet reads a programmable-logic design as a PLA truth table, checks its\n\
design rules and writes it as netlists of flip-flops, latches, pads and\n\
sums of products, with constraints for the fitter. Its companion cubekit\n\
proves netlists against their truth tables, draws, simulates and exports\n\
them.")
# Debian's rules for packages: one time for all files, compressed manuals and changelog.
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_SOURCE_DIR}/packaging/finish.cmake)
set(CPACK_SOURCE_GENERATOR TGZ)
set(CPACK_SOURCE_PACKAGE_FILE_NAME cubenet-${PROJECT_VERSION})
set(CPACK_SOURCE_IGNORE_FILES "/\\\\.git/" "/build/" "\\\\.log$" "/__pycache__/")
include(CPack)
