# Package of the Vantrel schema compiler: find_package(zktcomp CONFIG) gives
#   zktcomp::zktcomp     the compiler executable
#   zktcomp::libzktcomp  the shared library with its include directory
# and the function zktcomp_generate, which compiles a schema at build time.
include("${CMAKE_CURRENT_LIST_DIR}/zktcompTargets.cmake")

# Commands defined here run under these policies wherever they are called:
# CMP0116 lets Ninja read the compiler's dependency file.
cmake_policy(PUSH)
cmake_policy(VERSION 3.20...3.25)

# zktcomp_generate(TARGET <tgt> SCHEMA <file.sch> [OUTPUT_DIR <dir>] [OPTIONS <flags>...]
#                  [INCLUDE_DIR <dir>] [OUT_VAR <var>])
# Runs the compiler on SCHEMA whenever the schema or a file it includes
# changes, writing into OUTPUT_DIR (default: ${CMAKE_CURRENT_BINARY_DIR}/zktcomp).
# The generated C files become sources of <tgt> and OUTPUT_DIR its include
# directory; OUT_VAR receives every generated path. The user-function
# skeletons ({db}_udf.c, {db}_coll.c) are written but not compiled: the
# compiler never overwrites an existing one (it writes ".new" beside it).
# Relative paths are taken from the current source (SCHEMA, INCLUDE_DIR) and
# binary (OUTPUT_DIR) directories.
function(zktcomp_generate)
  cmake_parse_arguments(ZG "" "TARGET;SCHEMA;OUTPUT_DIR;INCLUDE_DIR;OUT_VAR" "OPTIONS" ${ARGN})
  if(NOT ZG_TARGET OR NOT ZG_SCHEMA OR ZG_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "zktcomp_generate: TARGET and SCHEMA are required; unknown: ${ZG_UNPARSED_ARGUMENTS}")
  endif()
  get_filename_component(schema "${ZG_SCHEMA}" ABSOLUTE BASE_DIR "${CMAKE_CURRENT_SOURCE_DIR}")
  set(outdir "${CMAKE_CURRENT_BINARY_DIR}/zktcomp")
  if(ZG_OUTPUT_DIR)
    get_filename_component(outdir "${ZG_OUTPUT_DIR}" ABSOLUTE BASE_DIR "${CMAKE_CURRENT_BINARY_DIR}")
  endif()
  set(args ${ZG_OPTIONS})
  if(ZG_INCLUDE_DIR)
    get_filename_component(incdir "${ZG_INCLUDE_DIR}" ABSOLUTE BASE_DIR "${CMAKE_CURRENT_SOURCE_DIR}")
    list(APPEND args -I "${incdir}")
  endif()
  file(MAKE_DIRECTORY "${outdir}")

  # The names depend on "declare database" inside the schema: ask the
  # compiler now, and again whenever the schema changes.
  get_target_property(exe zktcomp::zktcomp LOCATION)
  execute_process(COMMAND "${exe}" -list-outputs -o "${outdir}" ${args} "${schema}"
                  OUTPUT_VARIABLE listed ERROR_VARIABLE errors RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "zktcomp_generate: ${schema}:\n${errors}${listed}")
  endif()
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${schema}")
  string(STRIP "${listed}" listed)
  string(REPLACE "\n" ";" listed "${listed}")
  list(GET listed 0 header)
  get_filename_component(db "${header}" NAME_WE)

  set(outputs "")
  set(skeletons "")
  set(sources "")
  foreach(path IN LISTS listed)
    string(REGEX REPLACE "\\.new$" "" plain "${path}")
    if(plain STREQUAL "${outdir}/${db}_udf.c" OR plain STREQUAL "${outdir}/${db}_coll.c")
      # Either name may be the one a run writes.
      list(APPEND skeletons "${plain}" "${plain}.new")
    else()
      list(APPEND outputs "${path}")
      if(path MATCHES "\\.(c|h|hpp)$")
        list(APPEND sources "${path}")
      endif()
    endif()
  endforeach()

  get_filename_component(name "${schema}" NAME_WE)
  set(depfile "${outdir}/${name}.zktcomp.d")
  add_custom_command(OUTPUT ${outputs}
    BYPRODUCTS ${skeletons}
    COMMAND zktcomp::zktcomp -o "${outdir}" -M "${depfile}" ${args} "${schema}"
    MAIN_DEPENDENCY "${schema}"
    DEPFILE "${depfile}"
    COMMENT "Compiling schema ${ZG_SCHEMA}"
    VERBATIM)
  target_sources(${ZG_TARGET} PRIVATE ${sources})
  target_include_directories(${ZG_TARGET} PRIVATE "${outdir}")
  if(ZG_OUT_VAR)
    set(${ZG_OUT_VAR} ${listed} PARENT_SCOPE)
  endif()
endfunction()

cmake_policy(POP)
