# What a Debian package holds. The program keeps its data beside its image, so a script starts a copy of it that each
# user has.
set(linux_packaging "${CMAKE_SOURCE_DIR}/packaging/linux")
set(tally_id example.tallyhand.LedgerlineTallyhand)

string(REGEX REPLACE "^v" "" CPACK_PACKAGE_VERSION "${TALLY_VERSION}")
string(REPLACE "-" "~" CPACK_PACKAGE_VERSION "${CPACK_PACKAGE_VERSION}")
configure_file("${linux_packaging}/metainfo.xml.in" "${tally_id}.metainfo.xml" @ONLY)
configure_file("${linux_packaging}/changelog.in" changelog @ONLY)
find_program(GZIP gzip)
if(GZIP)
  execute_process(COMMAND "${GZIP}" -9nf "${CMAKE_BINARY_DIR}/changelog")
endif()

install(TARGETS ledgerline-tallyhand DESTINATION lib/ledgerline-tallyhand)
install(PROGRAMS "${linux_packaging}/ledgerline-tallyhand" DESTINATION bin)
install(FILES "${linux_packaging}/${tally_id}.desktop" DESTINATION share/applications)
install(FILES "${CMAKE_BINARY_DIR}/${tally_id}.metainfo.xml" DESTINATION share/metainfo)
install(FILES "${linux_packaging}/copyright" "${CMAKE_BINARY_DIR}/changelog.gz"
        DESTINATION share/doc/ledgerline-tallyhand OPTIONAL)
foreach(size 64 256)
  install(FILES "${CMAKE_SOURCE_DIR}/src/resources/icons/logo-${size}.png"
          DESTINATION share/icons/hicolor/${size}x${size}/apps RENAME ledgerline-tallyhand.png)
endforeach()
install(FILES "${CMAKE_SOURCE_DIR}/src/resources/icons/logo.svg"
        DESTINATION share/icons/hicolor/scalable/apps RENAME ledgerline-tallyhand.svg)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ledgerline-tallyhand)
set(CPACK_PACKAGE_VENDOR "${TALLY_ORGANISATION}")
set(CPACK_PACKAGE_CONTACT "${TALLY_ORGANISATION} <packages@tallyhand.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "companion for players of Rise of Kingdoms")
set(CPACK_PACKAGE_DESCRIPTION
    "Reads the mails that the game leaves in its cache, keeps their reports and\n shows chains, fights, runs and cooldowns beside the game.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION games)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "${TALLY_PRODUCT_PAGE}")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt6sql6-sqlite, qt6-image-formats-plugins")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS fonts-noto-color-emoji)
include(CPack)
