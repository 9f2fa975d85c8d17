# The servers that a build talks to. A build for users sets these; the defaults lead nowhere.
set(TALLY_SERVER_HOST "reference.tallyhand.example" CACHE STRING "Host of tables and icons")
set(TALLY_SERVER_PORT 443 CACHE STRING "Port of that host")
set(TALLY_SERVER_PINS "AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA="
    CACHE STRING "Base64 of the SHA-256 of each public key that the host may present, as a list")
set(TALLY_SERVER_AUTHORITY_FILE ""
    CACHE STRING "PEM file of the authorities to trust instead of the system's, for servers at home")
set(TALLY_UPDATE_HOST "update.tallyhand.example" CACHE STRING "Host of the version record")
set(TALLY_PRODUCT_PAGE "https://www.tallyhand.example/" CACHE STRING "Page for the user's browser")
