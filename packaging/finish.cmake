# Run by CPack on the installed files, before they are packed.
if(CPACK_GENERATOR STREQUAL "DEB")
  set(root ${CPACK_TEMPORARY_INSTALL_DIRECTORY})
  file(GLOB manuals ${root}/usr/share/man/man*/*)
  # Independent of the sources' permissions.
  set(permissions FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
  file(COPY ${CMAKE_CURRENT_LIST_DIR}/changelog DESTINATION ${root}/usr/share/doc/cubenet ${permissions})
  file(COPY ${CMAKE_CURRENT_LIST_DIR}/lintian-overrides DESTINATION ${root}/usr/share/lintian/overrides ${permissions})
  file(RENAME ${root}/usr/share/lintian/overrides/lintian-overrides ${root}/usr/share/lintian/overrides/cubenet)
  foreach(file IN LISTS manuals ITEMS ${root}/usr/share/doc/cubenet/changelog)
    execute_process(COMMAND gzip -9n ${file} COMMAND_ERROR_IS_FATAL ANY)
  endforeach()
endif()
if(DEFINED ENV{SOURCE_DATE_EPOCH})
  execute_process(COMMAND find ${CPACK_TEMPORARY_DIRECTORY} -exec touch -h -d @$ENV{SOURCE_DATE_EPOCH} {} +
                  COMMAND_ERROR_IS_FATAL ANY)
endif()
