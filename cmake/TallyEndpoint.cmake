# The servers that a build talks to. A build for users sets these; the defaults lead nowhere.
set(TALLY_SERVER_HOST "reference.tallyhand.example" CACHE STRING "Host of tables and icons")
set(TALLY_SERVER_PORT 443 CACHE STRING "Port of that host")
set(TALLY_SERVER_PINS "AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA="
    CACHE STRING "Base64 of the SHA-256 of each public key that the host may present, as a list")
set(TALLY_SERVER_AUTHORITY_FILE "" CACHE FILEPATH "PEM file of authorities to trust, not the system's")
set(TALLY_SERVER_KEYS "" CACHE PATH "Folder of keys of a server at home, for its pin and authority")
set(TALLY_UPDATE_HOST "update.tallyhand.example" CACHE STRING "Host of the version record")
set(TALLY_UPDATE_KEY ""
    CACHE STRING "Base64 of the Ed25519 public key that signs version records; empty: none is needed")
option(TALLY_UPDATES "Let the program look for new versions of itself" ON)
set(TALLY_UPDATED_BY "the system's package manager"
    CACHE STRING "Who updates a program that does not do so itself")
set(TALLY_PRODUCT_PAGE "https://www.tallyhand.example/" CACHE STRING "Page for the user's browser")

# tally_server_keys(DIR): keys and certificates of a reference server, made once for each DIR.
function(tally_server_keys dir)
  if(NOT EXISTS "${dir}/pin.txt" OR NOT EXISTS "${dir}/update-key.txt")
    execute_process(COMMAND "${CMAKE_SOURCE_DIR}/scripts/make-server-keys" "${dir}"
                    COMMAND_ERROR_IS_FATAL ANY)
  endif()
endfunction()

if(TALLY_SERVER_KEYS)
  tally_server_keys("${TALLY_SERVER_KEYS}")
  file(STRINGS "${TALLY_SERVER_KEYS}/pin.txt" TALLY_SERVER_PINS)
  set(TALLY_SERVER_AUTHORITY_FILE "${TALLY_SERVER_KEYS}/authority.pem")
  if(NOT TALLY_UPDATE_KEY)
    file(STRINGS "${TALLY_SERVER_KEYS}/update-key.txt" TALLY_UPDATE_KEY)
  endif()
endif()

# A key with a slip would let no record count, and nobody would notice.
string(LENGTH "${TALLY_UPDATE_KEY}" length)
if(TALLY_UPDATE_KEY AND NOT (length EQUAL 44 AND TALLY_UPDATE_KEY MATCHES "^[A-Za-z0-9+/]+=$"))
  message(FATAL_ERROR "TALLY_UPDATE_KEY is no Base64 of the 32 bytes of an Ed25519 key")
endif()
if(TALLY_UPDATES)
  set(TALLY_UPDATED_BY "")
endif()
