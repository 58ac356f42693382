# Designs as parts of a build. After find_package(cubenet):
#
#   cubenet_translate(NAME [DESIGN table.tt2] [OPTIONS option...]
#                     [PROVE [SOURCE source [SOURCE_OPTIONS option...]]])
#     Translates the table, NAME.tt2 by default, into NAME.nxf, NAME.ddf and NAME.tvx in the folder NAME of
#     the binary directory. OPTIONS are those of cubenet. With PROVE the netlist is proved against its table,
#     and with SOURCE also against the source that the table was imported from.
#
#   cubekit_import(NAME SOURCE source [OPTIONS option...] [DEPENDS file...])
#     Makes NAME.tt2 in the binary directory from a Verilog, BLIF or PLA file. OPTIONS are those of cubekit
#     import; DEPENDS lists the files that the source includes.
#
# They make the targets NAME and NAME-table, which are part of "all". A failing run shows its output and fails
# the build; a successful one shows only its warnings. Designs with parameters also get a file NAME.par; what
# needs it must depend on the target.

# Run by the build: cmake "-DRUN=program;argument;..." -P this-file
if(CMAKE_SCRIPT_MODE_FILE)
  execute_process(COMMAND ${RUN} RESULT_VARIABLE status OUTPUT_VARIABLE said ERROR_VARIABLE said)
  if(NOT status EQUAL 0)
    message("${said}")
    message(FATAL_ERROR "ended with status ${status}")
  elseif(said MATCHES "WARNING:")
    message("${said}")
  endif()
  return()
endif()

get_filename_component(_cubenet_prefix "${CMAKE_CURRENT_LIST_DIR}/../../.." ABSOLUTE)
find_program(CUBENET_PROGRAM cubenet HINTS "${_cubenet_prefix}/bin")
find_program(CUBEKIT_PROGRAM cubekit HINTS "${_cubenet_prefix}/bin")
if(NOT CUBENET_PROGRAM)
  set(cubenet_FOUND FALSE)
  set(cubenet_NOT_FOUND_MESSAGE "there is no program cubenet in ${_cubenet_prefix}/bin or on the path")
  return()
endif()
set(_cubenet_script "${CMAKE_CURRENT_LIST_FILE}")

# The command line of a custom command that runs a program through this file.
function(_cubenet_run result)
  list(JOIN ARGN "$<SEMICOLON>" run)
  set(${result} "${CMAKE_COMMAND}" "-DRUN=${run}" -P "${_cubenet_script}" PARENT_SCOPE)
endfunction()

function(_cubenet_absolute result file)
  get_filename_component(path "${file}" ABSOLUTE BASE_DIR "${CMAKE_CURRENT_SOURCE_DIR}")
  # Files made by the build are in the binary directory.
  get_filename_component(made "${file}" ABSOLUTE BASE_DIR "${CMAKE_CURRENT_BINARY_DIR}")
  get_source_file_property(is_made "${made}" GENERATED)
  if(is_made)
    set(path "${made}")
  endif()
  set(${result} "${path}" PARENT_SCOPE)
endfunction()

function(_cubenet_need_kit what)
  if(NOT CUBEKIT_PROGRAM)
    message(FATAL_ERROR "${what} needs the program cubekit, which is not in ${_cubenet_prefix}/bin or on the path")
  endif()
endfunction()

function(cubenet_translate name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "PROVE" "DESIGN;SOURCE" "OPTIONS;SOURCE_OPTIONS")
  if(arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "cubenet_translate(${name}): unknown arguments ${arg_UNPARSED_ARGUMENTS}")
  endif()
  if(NOT arg_DESIGN)
    set(arg_DESIGN "${name}.tt2")
  endif()
  _cubenet_absolute(table "${arg_DESIGN}")
  set(folder "${CMAKE_CURRENT_BINARY_DIR}/${name}")
  set(netlist nxf)
  list(FIND arg_OPTIONS -fext place)
  if(NOT place EQUAL -1)
    math(EXPR place "${place} + 1")
    list(GET arg_OPTIONS ${place} netlist)
  endif()
  set(outputs "${folder}/${name}.${netlist}" "${folder}/${name}.ddf" "${folder}/${name}.tvx")
  file(MAKE_DIRECTORY "${folder}")
  _cubenet_run(translate "${CUBENET_PROGRAM}" -b -i "${table}" ${arg_OPTIONS} "${name}")
  # First removes the log and parameters of an earlier run.
  add_custom_command(
    OUTPUT ${outputs}
    BYPRODUCTS "${folder}/cubenet.log"
    COMMAND "${CMAKE_COMMAND}" -E rm -f cubenet.log "${name}.par"
    COMMAND ${translate}
    DEPENDS "${table}" "${CUBENET_PROGRAM}"
    WORKING_DIRECTORY "${folder}"
    COMMENT "Translating ${name}"
    VERBATIM)
  set_property(DIRECTORY APPEND PROPERTY ADDITIONAL_CLEAN_FILES "${folder}/${name}.par")
  if(arg_PROVE)
    _cubenet_need_kit("cubenet_translate(${name} PROVE)")
    set(prove "${CUBEKIT_PROGRAM}" prove --nxf "${name}.${netlist}")
    set(case)
    if(-C IN_LIST arg_OPTIONS)
      set(case -C)
    endif()
    _cubenet_run(against_table ${prove} ${case} -i "${table}" "${name}")
    set(source) # not the caller's
    set(against_source)
    if(arg_SOURCE)
      _cubenet_absolute(source "${arg_SOURCE}")
      _cubenet_run(against_source ${prove} ${case} --source "${source}" ${arg_SOURCE_OPTIONS} "${name}")
      list(PREPEND against_source COMMAND)
    endif()
    add_custom_command(
      OUTPUT "${folder}/${name}.proved"
      COMMAND ${against_table}
      ${against_source}
      COMMAND "${CMAKE_COMMAND}" -E touch "${name}.proved"
      DEPENDS ${outputs} ${source} "${CUBEKIT_PROGRAM}"
      WORKING_DIRECTORY "${folder}"
      COMMENT "Proving ${name}"
      VERBATIM)
    list(APPEND outputs "${folder}/${name}.proved")
  endif()
  add_custom_target(${name} ALL DEPENDS ${outputs})
endfunction()

function(cubekit_import name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "SOURCE" "OPTIONS;DEPENDS")
  if(arg_UNPARSED_ARGUMENTS OR NOT arg_SOURCE)
    message(FATAL_ERROR "cubekit_import(${name}): needs SOURCE; unknown arguments: ${arg_UNPARSED_ARGUMENTS}")
  endif()
  _cubenet_need_kit("cubekit_import(${name})")
  _cubenet_absolute(source "${arg_SOURCE}")
  set(table "${CMAKE_CURRENT_BINARY_DIR}/${name}.tt2")
  _cubenet_run(import "${CUBEKIT_PROGRAM}" import ${arg_OPTIONS} "${source}" -o "${table}")
  add_custom_command(
    OUTPUT "${table}"
    COMMAND ${import}
    DEPENDS "${source}" ${arg_DEPENDS} "${CUBEKIT_PROGRAM}"
    COMMENT "Importing ${name}"
    VERBATIM)
  add_custom_target(${name}-table ALL DEPENDS "${table}")
endfunction()
