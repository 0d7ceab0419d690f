# Installation and the Debian package (`make deb`, CPack's DEB generator).
#
# The package holds the window program (where Qt is found), the command line, the default
# data files under share/vornhale/data (the program finds them from its own place, see
# base/DataFiles), a desktop entry and an icon. Library dependencies are computed by
# dpkg-shlibdeps; cty.dat comes from Debian's hamradio-files package.
include(GNUInstallDirs)

install(TARGETS vornhale-cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
if(TARGET vornhale)
    install(TARGETS vornhale RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()
install(DIRECTORY ${PROJECT_SOURCE_DIR}/data/seed/
        DESTINATION ${CMAKE_INSTALL_DATADIR}/vornhale/data)
install(FILES ${PROJECT_SOURCE_DIR}/packaging/vornhale.desktop
        DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${PROJECT_SOURCE_DIR}/packaging/vornhale.svg
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vornhale)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "Vornhale")
set(CPACK_PACKAGE_CONTACT "Vornhale developers <vornhale@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
    "Converts amateur-radio contest logs into Turbo HAMLOG CSV files")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "Reads the log of one contest (zLog .ALL/.TXT/.ZLO/.ZLOX, RTCL, CTESTWIN .lg8,
N1MM Logger, Cabrillo, ADIF) and writes the two Shift-JIS CSV files that Turbo
HAMLOG imports. Contains the window program vornhale and the command line
vornhale-cli.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION hamradio)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# libcurl is opened when a download starts, so no linked library names its package: it is
# named here, as the package manager of the building system knows it.
set(curl_package libcurl4)
execute_process(COMMAND dpkg-query -S */libcurl.so.4 OUTPUT_VARIABLE curl_owner ERROR_QUIET)
if(curl_owner MATCHES "^([^:,]+)")
    set(curl_package ${CMAKE_MATCH_1})
endif()
# cty.dat of a new program folder comes from hamradio-files; the window shows Japanese text.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "hamradio-files, ${curl_package}")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-noto-cjk")
set(CPACK_STRIP_FILES ON)
set(CPACK_THREADS 0)
include(CPack)
