# Desktop integration on freedesktop systems: the menu entry, the application
# icon at the sizes icon themes look for, and the document's MIME type.
if(UNIX AND NOT APPLE)
  include(GNUInstallDirs)
  set(_quillmere_resources ${CMAKE_SOURCE_DIR}/resources)
  install(FILES ${_quillmere_resources}/quillmere.desktop
    DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
  install(FILES ${_quillmere_resources}/quillmere-mime.xml
    DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages RENAME quillmere.xml)
  install(FILES ${_quillmere_resources}/icons/logo/quillmere.svg
    DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
  foreach(size 16 32 48 64 128 256)
    install(FILES ${_quillmere_resources}/icons/logo/hicolor/${size}x${size}/apps/quillmere.png
      DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps)
  endforeach()
endif()
