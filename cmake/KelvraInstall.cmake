# Where everything lies on a system: `cmake --install`, and a Debian package from `cpack -G DEB`. Program, module and
# resources stay beside each other in a folder of their own; a link leads there.
include(GNUInstallDirs)
set(kelvra_home ${CMAKE_INSTALL_LIBEXECDIR}/kelvra)
install(TARGETS kelvra_cli RUNTIME DESTINATION ${kelvra_home})
install(TARGETS kelvra_module LIBRARY DESTINATION ${kelvra_home} RUNTIME DESTINATION ${kelvra_home})
install(DIRECTORY res DESTINATION ${kelvra_home})

# From the option table of the program that was just built.
set(kelvra_reference ${CMAKE_BINARY_DIR}/reference)
file(MAKE_DIRECTORY ${kelvra_reference})
file(RELATIVE_PATH kelvra_link ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBEXECDIR}/kelvra/kelvra)
file(WRITE ${kelvra_reference}/changelog
  "kelvra (${PROJECT_VERSION}) unstable; urgency=low\n\n  * Version ${PROJECT_VERSION}.\n\n"
  " -- The Kelvra developers <kelvra@kelvra.invalid>  Thu, 01 Jan 2026 00:00:00 +0000\n")
add_custom_target(kelvra_reference
  COMMAND $<TARGET_FILE:kelvra_cli> --reference man | gzip -9n > kelvra.1.gz
  COMMAND $<TARGET_FILE:kelvra_cli> --reference bash > kelvra.bash
  COMMAND $<TARGET_FILE:kelvra_cli> --reference zsh > _kelvra
  COMMAND gzip -9nkf changelog
  COMMAND ${PROJECT_SOURCE_DIR}/scripts/copyright.sh > copyright
  COMMAND ${CMAKE_COMMAND} -E create_symlink ${kelvra_link} kelvra
  WORKING_DIRECTORY ${kelvra_reference} DEPENDS kelvra_cli VERBATIM
  COMMENT "Manual page and completion from the options of the program")
install(FILES ${kelvra_reference}/kelvra DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${kelvra_reference}/kelvra.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${kelvra_reference}/kelvra.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME kelvra)
install(FILES ${kelvra_reference}/_kelvra DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions)
install(FILES packaging/kelvra.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES packaging/kelvra-mime.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages RENAME kelvra.xml)
install(FILES packaging/kelvra.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(FILES docs/manual.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY docs/images DESTINATION ${CMAKE_INSTALL_DOCDIR} FILES_MATCHING PATTERN "*.png")
install(FILES ${kelvra_reference}/copyright DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES ${kelvra_reference}/changelog.gz DESTINATION ${CMAKE_INSTALL_DOCDIR})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kelvra)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "The Kelvra developers <kelvra@kelvra.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "look at laser scans, render and convert them")
set(CPACK_PACKAGE_DESCRIPTION "Loads LAS, LAZ, XYZ and PTS files, shows them in a window, draws and renders\n pictures, and writes points, hair, particles and splines.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES TRUE)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "fonts-dejavu-core, libgl1-mesa-dri")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_SOURCE_DIR}/out)
include(CPack)
