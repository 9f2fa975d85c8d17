# Language level, warnings, sanitizers and build speed, the same for every target of the project.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(TALLY_CCACHE ccache)
if(TALLY_CCACHE)
  # Without the sloppiness ccache refuses to share objects that use a precompiled header; with paths
  # below the source folder taken as relative, all checkouts of a machine share their objects.
  set(CMAKE_CXX_COMPILER_LAUNCHER
      ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros
      CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1 ${TALLY_CCACHE})
endif()

add_library(tally_options INTERFACE)
target_compile_options(
  tally_options
  INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast -Wnon-virtual-dtor
            -Woverloaded-virtual)
if(TALLY_WERROR)
  target_compile_options(tally_options INTERFACE -Werror)
endif()
# Texts say which encoding they are in: an implicit conversion from or to char would hide it.
target_compile_definitions(
  tally_options INTERFACE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY
                          QT_NO_URL_CAST_FROM_STRING QT_NO_KEYWORDS)
if(WIN32)
  # scripts/check-windows takes them from there too.
  file(STRINGS "${CMAKE_SOURCE_DIR}/cmake/windows-definitions.txt" windows_definitions)
  target_compile_definitions(tally_options INTERFACE ${windows_definitions})
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND TALLY_PCH)
  target_compile_options(tally_options INTERFACE -fpch-preprocess)
endif()

if(TALLY_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

if(TALLY_TSAN)
  # What it adds to the code makes g++ 12 think that moved optionals are uninitialised.
  add_compile_options(-fsanitize=thread -fno-omit-frame-pointer -fno-optimize-sibling-calls
                      -Wno-maybe-uninitialized)
  add_link_options(-fsanitize=thread)
endif()

if(CMAKE_INTERPROCEDURAL_OPTIMIZATION AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # Seen as a whole, Qt's hash looks to g++ as if it could ask for more memory than there is.
  add_link_options(-Wno-alloc-size-larger-than)
endif()
