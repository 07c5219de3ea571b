# What `cmake --install build/release --prefix DIR` puts where; --component programs, rehearsal or docs takes one part.
# The packages for Windows are made by scripts/package, which names files as the product has them.
include(GNUInstallDirs)

if(WIN32)
  install(TARGETS OnduraEService OnduraService OnduraBackground OnduraElevated OndruaEStartup
          RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT programs
          LIBRARY DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT programs)
else()
  # The host looks for the mail helper beside itself, `ondura init` for engine and scanner.
  install(TARGETS ondura ondura-host OndruaEStartup restic-engine restic-scanner RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT programs)
  install(FILES ${PROJECT_BINARY_DIR}/tools/ondura.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT docs)
endif()

install(TARGETS rehearsal-engine rehearsal-scanner rehearsal-database-manager
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT rehearsal)

install(FILES README.md CHANGELOG.md SECURITY.md CONTRIBUTING.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT docs)
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT docs)
