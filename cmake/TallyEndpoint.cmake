# The servers that a build talks to. A build for users sets these; the defaults lead nowhere.
set(TALLY_SERVER_HOST "reference.tallyhand.example" CACHE STRING "Host of tables and icons")
set(TALLY_SERVER_PORT 443 CACHE STRING "Port of that host")
set(TALLY_SERVER_PINS "AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA="
    CACHE STRING "Base64 of the SHA-256 of each public key that the host may present, as a list")
set(TALLY_SERVER_AUTHORITY_FILE "" CACHE FILEPATH "PEM file of authorities to trust, not the system's")
set(TALLY_SERVER_KEYS "" CACHE PATH "Folder of keys of a server at home, for its pin and authority")
set(TALLY_UPDATE_HOST "update.tallyhand.example" CACHE STRING "Host of the version record")
set(TALLY_PRODUCT_PAGE "https://www.tallyhand.example/" CACHE STRING "Page for the user's browser")

# tally_server_keys(DIR): keys and certificates of a reference server, made once for each DIR.
function(tally_server_keys dir)
  if(NOT EXISTS "${dir}/pin.txt")
    execute_process(COMMAND "${CMAKE_SOURCE_DIR}/scripts/make-server-keys" "${dir}"
                    COMMAND_ERROR_IS_FATAL ANY)
  endif()
endfunction()

if(TALLY_SERVER_KEYS)
  tally_server_keys("${TALLY_SERVER_KEYS}")
  file(STRINGS "${TALLY_SERVER_KEYS}/pin.txt" TALLY_SERVER_PINS)
  set(TALLY_SERVER_AUTHORITY_FILE "${TALLY_SERVER_KEYS}/authority.pem")
endif()
