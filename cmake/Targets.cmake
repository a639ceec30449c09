# One target a folder. Each function lists its sources and what it may use; scripts/arrows reports an include that the
# target does not list.

# With CMAKE_UNITY_BUILD, which the tests and some presets set, the files of a target are compiled as one, which
# takes half the time. These targets have files that use the same private names, so their files are always compiled one by
# one. A "redefinition" that only such a build reports means that a target belongs here.
set(vamba_targets_with_private_names_in_common
  desktop_appearance render_layout render_terminal)
function(vamba_decide_unity name)
  if(name IN_LIST vamba_targets_with_private_names_in_common)
    set_target_properties(${name} PROPERTIES UNITY_BUILD OFF)
  endif()
endfunction()

# vamba_library(NAME [SOURCES file...] [DEPENDS target...] [PRIVATE_DEPENDS target...])
# A static library, or without SOURCES a folder of headers alone; includes are written from src/
# ("platform/calendar/calendar.hpp").
function(vamba_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS;PRIVATE_DEPENDS" ${ARGN})
  if(NOT ARG_SOURCES)
    add_library(${name} INTERFACE)
    target_include_directories(${name} INTERFACE ${CMAKE_SOURCE_DIR}/src)
    target_link_libraries(${name} INTERFACE ${ARG_DEPENDS})
    return()
  endif()
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR}/src)
  target_link_libraries(${name} PUBLIC ${ARG_DEPENDS} PRIVATE ${ARG_PRIVATE_DEPENDS} vamba_compile_options)
  vamba_decide_unity(${name})
endfunction()

# vamba_program(NAME [STARTED_BY_HOST] SOURCES file... DEPENDS target...)
# Programs are in the build's folder bin/; those that the host starts are in libexec/vamba/, as when installed.
function(vamba_program name)
  cmake_parse_arguments(ARG "STARTED_BY_HOST" "" "SOURCES;DEPENDS" ${ARGN})
  set(folder bin)
  if(ARG_STARTED_BY_HOST)
    set(folder libexec/vamba)
  endif()
  add_executable(${name} ${ARG_SOURCES})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/${folder})
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/src)
  target_link_libraries(${name} PRIVATE ${ARG_DEPENDS} vamba_compile_options)
  vamba_decide_unity(${name})
endfunction()

# vamba_test(NAME SOURCES file... DEPENDS target... [LABELS label...])
# A GoogleTest program; each of its tests is a ctest test of its own. The label `threads` marks those worth running
# under ThreadSanitizer; the target threads_tests builds them. All stand in bin/tests/.
function(vamba_test name)
  cmake_parse_arguments(ARG "" "TIMEOUT" "SOURCES;DEPENDS;LABELS" ${ARGN})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 300) # for a test that hangs; on a busy machine half a minute becomes two
  endif()
  add_executable(${name} ${ARG_SOURCES})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin/tests)
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/src ${CMAKE_SOURCE_DIR}/tests)
  target_link_libraries(${name} PRIVATE ${ARG_DEPENDS} GTest::gmock GTest::gtest_main vamba_compile_options)
  target_compile_options(${name} PRIVATE -pthread)
  target_precompile_headers(${name} REUSE_FROM test_precompiled)
  vamba_decide_unity(${name})
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST NO_PRETTY_VALUES
    PROPERTIES TIMEOUT ${ARG_TIMEOUT} LABELS "${ARG_LABELS}")
  if("threads" IN_LIST ARG_LABELS)
    if(NOT TARGET threads_tests)
      add_custom_target(threads_tests)
    endif()
    add_dependencies(threads_tests ${name})
  endif()
endfunction()
