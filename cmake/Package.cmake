# `cmake --build --preset release --target package` makes the Debian packages brevio and brevio-gateway.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME brevio)
set(CPACK_PACKAGE_VENDOR Corvane)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL program gateway)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SOURCE brevio)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME brevio)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION net)
# The plugins that draw the icons: nothing links them.
set(CPACK_DEBIAN_PROGRAM_PACKAGE_DEPENDS libqt6svg6)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_RECOMMENDS "ca-certificates, qt6-wayland, xdg-utils")
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SUGGESTS brevio-gateway)
set(CPACK_COMPONENT_PROGRAM_DESCRIPTION "send text messages to mobile phones
Brevio sends text messages (SMS) from a PC through a paid gateway on the
internet, to a number, a contact or a group, and keeps the phone book they
come from. It tells what became of each message, and it never sends one twice
by itself.")

set(CPACK_DEBIAN_GATEWAY_PACKAGE_NAME brevio-gateway)
set(CPACK_DEBIAN_GATEWAY_PACKAGE_SECTION net)
set(CPACK_DEBIAN_GATEWAY_PACKAGE_SUGGESTS "kannel, sqlite3")
set(scripts ${CMAKE_CURRENT_SOURCE_DIR}/data/gateway/package)
set(CPACK_DEBIAN_GATEWAY_PACKAGE_CONTROL_EXTRA ${scripts}/postinst ${scripts}/prerm ${scripts}/postrm)
set(CPACK_COMPONENT_GATEWAY_DESCRIPTION "message gateway of an office for Brevio
The gateway keeps the accounts of an office and the messages that its people
send with Brevio, hands them to an SMS engine (Kannel), and follows them until
they are delivered. What it has accepted is on the disk, and is never handed
over twice. It also runs without an engine, in memory, to try Brevio with.")

include(CPack)
