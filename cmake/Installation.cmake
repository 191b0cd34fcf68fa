# Installation where a Linux desktop expects the files, and the Debian package.
# The program finds the helpers and the help page from its own folder through
# the relative paths written in version.h (TG_ASSISTANTS_RELATIF, TG_DONNEES_RELATIF).
set(TG_ID fr.tessellographe.Tessellographe)
set(TG_INSTALLATION ${CMAKE_SOURCE_DIR}/app/installation)

# The headless tool's manual page, made by the tool from its own --help texts.
set(TG_PAGE_CLI ${CMAKE_BINARY_DIR}/man/tessellographe-cli.1)
add_custom_command(OUTPUT ${TG_PAGE_CLI}
                   COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/man
                   COMMAND tessellographe-cli-complet --man ${TG_PAGE_CLI}
                   DEPENDS tessellographe-cli-complet VERBATIM)
add_custom_target(page_manuel ALL DEPENDS ${TG_PAGE_CLI})

install(TARGETS tessellographe tessellographe-cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS tessellographe-cli-complet TG_Kill Tg_Update TG_CheckUpdate
        RUNTIME DESTINATION ${CMAKE_INSTALL_LIBEXECDIR}/tessellographe)
install(FILES ${CMAKE_SOURCE_DIR}/app/aide/tessellographe.html DESTINATION ${CMAKE_INSTALL_DATADIR}/tessellographe/aide)
install(FILES ${TG_INSTALLATION}/${TG_ID}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${TG_INSTALLATION}/${TG_ID}.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${TG_INSTALLATION}/${TG_ID}.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(FILES ${TG_INSTALLATION}/tessellographe.1 ${TG_PAGE_CLI} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

# cpack -G DEB: the libraries the programs link come from dpkg-shlibdeps; what
# no library names is added by hand: Qt's platform plugins (the windows cannot
# open without them), and, recommended, the cartouche's fonts and the desktop's
# opener of web pages and files.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tessellographe)
set(CPACK_PACKAGE_VENDOR "Tessellographe")
set(CPACK_PACKAGE_CONTACT "Équipe Tessellographe <equipe@tessellographe.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "préparer des photomicrographies pour la publication")
set(CPACK_PACKAGE_DESCRIPTION
    "Tessellographe amène une photo prise au microscope à l'un de cinq formats de sortie, l'étalonne
d'après des tables de mesure, ajoute un cartouche avec une barre d'échelle et l'enregistre en JPEG
sous un poids maximal ; le bloc de commentaire du fichier porte l'étalonnage. Outil sans fenêtre :
tessellographe-cli.")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The libraries opened at first use escape dpkg-shlibdeps: named here.
set(CPACK_DEBIAN_PACKAGE_DEPENDS
    "qt6-qpa-plugins, qt6-translations-l10n, ${TG_PAQUET_HEIF}, ${TG_PAQUET_RAW}, ${TG_PAQUET_FFTW3F}")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-comic-neue, fonts-liberation2, xdg-utils")
set(CPACK_STRIP_FILES ON)
include(CPack)
