# tally_layer(NAME INCLUDE_ROOT <dir> SOURCES <files> LINKS <targets below>)
#
# One floor of the house as a static library. Its headers are reached through its own include root,
# which only the targets that link it get to see: an include of a header from a floor above does
# not compile.
function(tally_layer name)
  cmake_parse_arguments(LAYER "" "INCLUDE_ROOT" "SOURCES;LINKS" ${ARGN})
  add_library(${name} STATIC ${LAYER_SOURCES})
  target_include_directories(${name} PUBLIC ${LAYER_INCLUDE_ROOT})
  target_link_libraries(${name} PUBLIC ${LAYER_LINKS} PRIVATE tally_options)
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
