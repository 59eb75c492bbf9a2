# What is installed, as two components: the program, and the gateway for one machine. Each is a package of its own
# (Package.cmake).
include(GNUInstallDirs)
find_program(GZIP gzip REQUIRED)

# Where the program is installed, with the files that must lie beside it.
set(BREVIO_PROGRAM_DIR lib/brevio)

# brevio_install_gzipped(FILE FOLDER COMPONENT): fills in the version and compresses the file as Debian wants it.
function(brevio_install_gzipped file folder component)
  cmake_path(GET file FILENAME name)
  set(filled ${CMAKE_CURRENT_BINARY_DIR}/${component}/${name})
  configure_file(${file} ${filled} @ONLY)
  execute_process(COMMAND ${GZIP} --best --no-name --keep --force ${filled} COMMAND_ERROR_IS_FATAL ANY)
  install(FILES ${filled}.gz DESTINATION ${folder} COMPONENT ${component})
endfunction()

# brevio_install_documents(PACKAGE COMPONENT): what every Debian package says of itself.
function(brevio_install_documents package component)
  set(folder ${CMAKE_INSTALL_DATADIR}/doc/${package})
  install(FILES ${PROJECT_SOURCE_DIR}/docs/licences.md DESTINATION ${folder} RENAME copyright COMPONENT ${component})
  brevio_install_gzipped(package/changelog ${folder} ${component})
  brevio_install_gzipped(man/${package}.1 ${CMAKE_INSTALL_MANDIR}/man1 ${component})
endfunction()

configure_file(${CMAKE_CURRENT_LIST_DIR}/Uninstall.cmake.in ${PROJECT_BINARY_DIR}/Uninstall.cmake @ONLY)
add_custom_target(uninstall
  COMMAND ${CMAKE_COMMAND} -P ${PROJECT_BINARY_DIR}/Uninstall.cmake
  COMMENT "Removing what was installed"
  VERBATIM)
