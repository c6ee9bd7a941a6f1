# What every own source is compiled with, as the interface target gantry_options.

option(GANTRY_WERROR "Treat warnings as errors" OFF)
option(GANTRY_COVERAGE "Instrument for gcov" OFF)
option(GANTRY_LIBFUZZER "Link the fuzz entries with libFuzzer (needs clang)" OFF)
set(GANTRY_SANITIZE "" CACHE STRING "Sanitizers, as for -fsanitize=")

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_C_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()

add_library(gantry_options INTERFACE)
target_compile_options(gantry_options INTERFACE -Wall -Wextra -Wconversion)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 warns of its own std::string in optimised builds (GCC bug 105651).
  target_compile_options(gantry_options INTERFACE -Wno-restrict)
endif()
if(GANTRY_WERROR)
  target_compile_options(gantry_options INTERFACE -Werror)
endif()
target_compile_definitions(gantry_options INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_FOREACH
  GANTRY_VERSION="${PROJECT_VERSION}"
  GANTRY_VERSION_MAJOR=${PROJECT_VERSION_MAJOR}
  GANTRY_VERSION_MINOR=${PROJECT_VERSION_MINOR}
  GANTRY_VERSION_PATCH=${PROJECT_VERSION_PATCH})

if(GANTRY_SANITIZE)
  # Instrumentation makes GCC see uninitialised values in the standard library, as its manual warns.
  target_compile_options(gantry_options INTERFACE -Wno-maybe-uninitialized)
  # One optimisation level keeps the instrumented programs usable in the long tests.
  set(CMAKE_CXX_FLAGS_DEBUG "-g1 -O1")
  add_compile_options(-fsanitize=${GANTRY_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${GANTRY_SANITIZE})
endif()
if(GANTRY_LIBFUZZER)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
if(GANTRY_COVERAGE)
  add_compile_options(--coverage)
  add_link_options(--coverage)
endif()
# Only the libraries that a program calls are loaded at its start: the tools start faster for it.
add_link_options(-Wl,--as-needed)
