# Name, maker and version of the program, from the one place where they stand.
set(identity_header "${CMAKE_SOURCE_DIR}/src/platform/identity.h")
set_property(DIRECTORY "${CMAKE_SOURCE_DIR}" APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${identity_header}")
file(READ "${identity_header}" identity)

function(tally_identity variable constant)
  string(REGEX MATCH "${constant}{\"([^\"]+)\"}" found "${identity}")
  if(NOT found)
    message(FATAL_ERROR "${identity_header} names no ${constant}")
  endif()
  set(${variable} "${CMAKE_MATCH_1}" PARENT_SCOPE)
endfunction()

tally_identity(TALLY_NAME application_name)
tally_identity(TALLY_ORGANISATION organisation_name)
tally_identity(TALLY_VERSION application_version)

# Windows wants four numbers, and no zeros before them, which would make them octal.
string(REGEX MATCHALL "[0-9]+" numbers "${TALLY_VERSION}")
list(TRANSFORM numbers REPLACE "^0+([0-9])" "\\1")
list(LENGTH numbers count)
while(count LESS 4)
  list(INSERT numbers 2 0)
  math(EXPR count "${count} + 1")
endwhile()
list(JOIN numbers "," TALLY_VERSION_NUMBERS)
