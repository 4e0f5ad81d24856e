# Where an installation has what, and the Debian package. The programs find what they need beside them, at
# ../share/volvelle, so that any prefix serves.
include(GNUInstallDirs)
set(id com.orvane.Volvelle)
set(made "${PROJECT_BINARY_DIR}/resources")
set(given "${PROJECT_SOURCE_DIR}/resources")

install(TARGETS volvelle volvelle-sound volvelle-app RUNTIME DESTINATION bin)
install(DIRECTORY "${made}/Phrases" "${made}/Phrases2" DESTINATION share/volvelle)
install(FILES "${made}/banks.json" "${made}/manual.pdf" "${made}/help.html" "${made}/circle.png"
  "${made}/New MIDI Idea.mid" DESTINATION share/volvelle)
install(FILES "${made}/gs_instruments.dls" DESTINATION share/volvelle OPTIONAL)
install(FILES "${given}/${id}.desktop" DESTINATION share/applications)
install(FILES "${given}/${id}.metainfo.xml" DESTINATION share/metainfo)
install(FILES "${given}/${id}.mime.xml" DESTINATION share/mime/packages RENAME "${id}.xml")
install(FILES "${given}/icons/${id}.svg" DESTINATION share/icons/hicolor/scalable/apps)
install(FILES "${given}/icons/${id}-symbolic.svg" DESTINATION share/icons/hicolor/symbolic/apps)
install(FILES "${PROJECT_SOURCE_DIR}/docs/volvelle.1" DESTINATION share/man/man1)
install(FILES "${PROJECT_SOURCE_DIR}/docs/copyright" DESTINATION share/doc/volvelle)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME volvelle)
set(CPACK_PACKAGE_VENDOR "The Volvelle authors")
set(CPACK_PACKAGE_CONTACT "The Volvelle authors <volvelle@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "MIDI idea generator")
set(CPACK_PACKAGE_DESCRIPTION "Makes musical ideas: chords, a melody, a bass, drums and a line that runs against the bar,
all in one harmony, as a sixteen-track MIDI file that opens in any music program. It shows ideas as circles, plays them,
and works from the terminal, too.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/packages")
set(CPACK_INSTALL_CMAKE_PROJECTS "${PROJECT_BINARY_DIR};Volvelle;Unspecified;/")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt6svg6, fonts-inter | fonts-dejavu-core")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-wayland, fluid-soundfont-gm | timgm6mb-soundfont | musescore-general-soundfont-small")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
