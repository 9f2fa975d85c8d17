# tally_layer(NAME [MOC] SOURCES <files> LINKS <targets below> [PRIVATE_LINKS <libraries>])
#
# One box of the house as a static library. Headers are included by their path below src/;
# scripts/check-layers looks after what may include what, and a call upwards does not link.
function(tally_layer name)
  cmake_parse_arguments(LAYER "MOC" "" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
  add_library(${name} STATIC ${LAYER_SOURCES})
  target_include_directories(${name} PUBLIC "${CMAKE_SOURCE_DIR}/src")
  target_link_libraries(${name} PUBLIC ${LAYER_LINKS} PRIVATE tally_options ${LAYER_PRIVATE_LINKS})
  set_target_properties(${name} PROPERTIES AUTOMOC "${LAYER_MOC}")
  tally_precompile(${name})
endfunction()

# tally_program(NAME SOURCES <files> LINKS <targets>): an executable with the project's warnings.
function(tally_program name)
  cmake_parse_arguments(PROGRAM "" "" "SOURCES;LINKS" ${ARGN})
  add_executable(${name} ${PROGRAM_SOURCES})
  if(TALLY_MIMALLOC)
    # A decoded mail is ten thousands of small nodes, which mimalloc hands out nearly twice as fast
    # as glibc. It stands first so that its malloc comes before that of the C library.
    target_link_libraries(${name} PRIVATE mimalloc)
    target_sources(${name} PRIVATE "${CMAKE_SOURCE_DIR}/src/platform/memory/throwing_new.cpp")
  endif()
  target_link_libraries(${name} PRIVATE ${PROGRAM_LINKS} tally_options)
endfunction()

function(tally_precompile name)
  if(TALLY_PCH)
    target_precompile_headers(
      ${name}
      PRIVATE
      <QByteArray>
      <QString>
      <QVariant>
      <QVariantMap>
      <QFile>
      <QDir>
      <optional>
      <vector>
      <stdexcept>)
  endif()
endfunction()
