# The layers from the ground up. A library may link only layers that stand before its own in this list.
set(VOLVELLE_LAYERS
  base wire files musicsequence audiodevice synthesizer audiograph soundunits midi theory aumidievents sequence phrases scores audio
  document cli soundcli)

# volvelle_library(NAME base SOURCES A.cpp B.cpp [LINKS lower layers] [PRIVATE_LINKS outside libraries])
function(volvelle_library)
  cmake_parse_arguments(ARG "" "NAME" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
  list(FIND VOLVELLE_LAYERS "${ARG_NAME}" own)
  if(own EQUAL -1)
    message(FATAL_ERROR "'${ARG_NAME}' is no layer of this house: see VOLVELLE_LAYERS")
  endif()
  foreach(link IN LISTS ARG_LINKS)
    list(FIND VOLVELLE_LAYERS "${link}" lower)
    if(lower EQUAL -1 OR NOT lower LESS own)
      message(FATAL_ERROR "'${ARG_NAME}' may not link '${link}': it does not stand below")
    endif()
  endforeach()
  add_library(volvelle_${ARG_NAME} STATIC ${ARG_SOURCES})
  target_include_directories(volvelle_${ARG_NAME} PUBLIC "${PROJECT_SOURCE_DIR}/src")
  if(VOLVELLE_TESTS)
    target_compile_definitions(volvelle_${ARG_NAME} PUBLIC VOLVELLE_FAULT_POINTS)
  endif()
  list(TRANSFORM ARG_LINKS PREPEND volvelle_)
  target_link_libraries(volvelle_${ARG_NAME} PUBLIC ${ARG_LINKS} PRIVATE ${ARG_PRIVATE_LINKS})
endfunction()

# What every program of tests is built with: precompiled headers, and nothing optimised but what is tested.
function(volvelle_test_settings target)
  target_link_libraries(${target} PRIVATE volvelle_testsupport GTest::gmock)
  target_precompile_headers(${target} REUSE_FROM volvelle_testheaders)
  target_compile_options(${target} PRIVATE ${VOLVELLE_TEST_OPTIONS})
endfunction()

# volvelle_test(NAME midi_test SOURCES ATest.cpp ... LINKS midi): one GoogleTest program, its tests found
# by ctest one by one.
function(volvelle_test)
  cmake_parse_arguments(ARG "" "NAME" "SOURCES;LINKS" ${ARGN})
  add_executable(${ARG_NAME} ${ARG_SOURCES})
  list(TRANSFORM ARG_LINKS PREPEND volvelle_)
  target_link_libraries(${ARG_NAME} PRIVATE ${ARG_LINKS})
  volvelle_test_settings(${ARG_NAME})
  gtest_discover_tests(${ARG_NAME} DISCOVERY_MODE PRE_TEST TEST_PREFIX "${ARG_NAME}/"
    PROPERTIES TIMEOUT 600)
endfunction()
