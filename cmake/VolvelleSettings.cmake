# Language, warnings, sanitizers and compiler cache for every target of the project.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE)
endif()

find_program(VOLVELLE_CCACHE ccache)
if(VOLVELLE_CCACHE)
  # What was compiled in one folder serves in any other.
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env "CCACHE_BASEDIR=${CMAKE_SOURCE_DIR}" CCACHE_NOHASHDIR=true
    CCACHE_SLOPPINESS=pch_defines,time_macros "${VOLVELLE_CCACHE}")
endif()

set(CMAKE_CXX_FLAGS_DEBUG "-O1 -g1")
add_compile_options(
  -Wall -Wextra -Wpedantic -Werror -Wconversion -Wsign-conversion -Wnon-virtual-dtor
  -Woverloaded-virtual -Wcast-align -Wunused -Wnull-dereference -Wformat=2 -Wimplicit-fallthrough)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # g++ 12 reports these in inlined library code where nothing is wrong.
  add_compile_options(-Wno-null-dereference -Wno-stringop-overflow -Wno-array-bounds -Wno-restrict)
  add_compile_options(-Wduplicated-cond -Wlogical-op -Wshadow=local)
else()
  # The library of g++ 12 sorts stably through a temporary buffer that it calls deprecated itself.
  add_compile_options(-Wshadow -Wno-deprecated-declarations)
endif()

if(VOLVELLE_SANITIZE)
  add_compile_options(-fsanitize=${VOLVELLE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${VOLVELLE_SANITIZE})
endif()
if(VOLVELLE_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
