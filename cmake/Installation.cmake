# Installing Mirel as a desktop program, and its Debian package.
#
#   cmake --install build --prefix /usr/local
#   cd build && cpack -G DEB
#
# The program keeps its data (the library's MCE_* files, the examples) in
# <prefix>/share/mirel; the launcher, icon, file type and metainfo go where
# desktops look for them.

include(GNUInstallDirs)

set(MIREL_ID org.mirel.Mirel)
set(MIREL_DATA_DIR ${CMAKE_INSTALL_DATADIR}/mirel)

# The icon is a Mirel program: the build draws it with the program just built.
set(MIREL_ICON ${CMAKE_BINARY_DIR}/${MIREL_ID}.svg)
add_custom_command(OUTPUT ${MIREL_ICON}
  COMMAND ${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8
          $<TARGET_FILE:mirel> render ${CMAKE_SOURCE_DIR}/data/icone.dat -o ${MIREL_ICON} --page 48x48
  DEPENDS mirel ${CMAKE_SOURCE_DIR}/data/icone.dat
  COMMENT "Drawing the icon with Mirel"
  VERBATIM)
add_custom_target(mirel_icone ALL DEPENDS ${MIREL_ICON})

# The release in the metainfo follows the project's version.
configure_file(${CMAKE_SOURCE_DIR}/data/${MIREL_ID}.metainfo.xml
  ${CMAKE_BINARY_DIR}/${MIREL_ID}.metainfo.xml @ONLY)

install(TARGETS mirel RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

file(GLOB MIREL_LIBRARY CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/examples/MCE_*)
install(FILES ${MIREL_LIBRARY} DESTINATION ${MIREL_DATA_DIR})
install(DIRECTORY ${CMAKE_SOURCE_DIR}/examples/ DESTINATION ${MIREL_DATA_DIR}/examples)

install(FILES ${CMAKE_SOURCE_DIR}/data/${MIREL_ID}.desktop
  DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${MIREL_ICON}
  DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(FILES ${CMAKE_SOURCE_DIR}/data/${MIREL_ID}.xml
  DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages)
install(FILES ${CMAKE_BINARY_DIR}/${MIREL_ID}.metainfo.xml
  DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${CMAKE_SOURCE_DIR}/README.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/mirel)

# The Debian package. The Qt libraries come from the linked objects; the
# platform plugins that open the window and the fonts whose metrics the
# drawings assume are not linked, so they are named.
set(CPACK_PACKAGE_NAME mirel)
set(CPACK_PACKAGE_VENDOR "Mirel")
set(CPACK_PACKAGE_CONTACT "Mirel <mirel@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "draws the scales of analogue meters and dials")
set(CPACK_PACKAGE_DESCRIPTION
  "Mirel draws the scales of analogue meters, dials and small front panels from a short command language, and prints them at true size or writes PDF, SVG and PNG files.")
set(CPACK_PACKAGE_INSTALL_DIRECTORY mirel)
set(CPACK_GENERATOR DEB)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins, fonts-liberation2")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xdg-utils, qt6-translations-l10n, cups")
# The package installs under /usr whatever prefix the build tree was given.
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
include(CPack)

# The install into a temporary prefix, checked as a desktop sees it; the
# Debian package is built and inspected too unless MIREL_TEST_DEB is OFF.
option(MIREL_TEST_DEB "Build and inspect the Debian package in the tests" ON)
if(BUILD_TESTING)
  add_test(NAME Installation
    COMMAND ${CMAKE_SOURCE_DIR}/scripts/installation_test.sh ${CMAKE_BINARY_DIR}
            $<$<BOOL:${MIREL_TEST_DEB}>:--deb>
    COMMAND_EXPAND_LISTS)
  set_tests_properties(Installation PROPERTIES TIMEOUT 180)
endif()
