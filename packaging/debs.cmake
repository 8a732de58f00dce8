# SPDX-License-Identifier: MIT
# What CPack has to know to make a Debian package of each component.

set(CPACK_GENERATOR DEB)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PACKAGE_NAME corvane)
# CPack would put it in front of the descriptions below, whose first lines are summaries already.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGE_CONTACT "Corvane maintainers <maintainers@norvale.example>")
set(CPACK_PACKAGING_INSTALL_PREFIX "${CMAKE_INSTALL_PREFIX}")
set(CPACK_COMPONENTS_ALL ${components})
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "${PROJECT_HOMEPAGE_URL}")

set(CPACK_DEBIAN_CORVANE_PACKAGE_NAME corvane)
set(CPACK_COMPONENT_CORVANE_DESCRIPTION "control program for TMX RF switch matrices
Corvane connects to a TMX RF switch matrix over USB, LAN or serial and shows
its front panel. Click a VNA port and a test port, and the instrument routes
the one to the other. The same window sets the colours of the port LEDs and
the LAN settings, sends raw SCPI commands and upgrades the firmware.
.
USB and LAN connections use the VISA library of any vendor, or else that of
the package corvane-visa; without one the instrument is reached through its
USB serial port.")
# The arrows and radio buttons are SVG pictures, which Qt opens with a plugin.
set(CPACK_DEBIAN_CORVANE_PACKAGE_DEPENDS libqt5svg5)
# Opens the open-source acknowledgment.
set(CPACK_DEBIAN_CORVANE_PACKAGE_RECOMMENDS xdg-utils)
set(CPACK_DEBIAN_CORVANE_PACKAGE_SUGGESTS "corvane-simulator, corvane-visa")
set(CPACK_DEBIAN_CORVANE_PACKAGE_CONTROL_EXTRA "${CMAKE_CURRENT_SOURCE_DIR}/debian/postinst")

set(CPACK_DEBIAN_CORVANE-SIMULATOR_PACKAGE_NAME corvane-simulator)
set(CPACK_COMPONENT_CORVANE-SIMULATOR_DESCRIPTION "simulated TMX RF switch matrices and tools
corvane-sim-run runs any VISA program with simulated instruments in place of
the system's VISA library, which stays as it is for all other programs.
corvane-sim puts simulated instruments behind a serial line or on the
network, and corvane-package makes and examines firmware packages.")
set(CPACK_DEBIAN_CORVANE-SIMULATOR_PACKAGE_SUGGESTS corvane)

set(CPACK_DEBIAN_CORVANE-VISA_PACKAGE_NAME corvane-visa)
set(CPACK_COMPONENT_CORVANE-VISA_DESCRIPTION "VISA library for instruments on USB and LAN
With this library Corvane reaches a TMX RF switch matrix on USB (USBTMC,
through the kernel's own driver) and on LAN (VXI-11) where no vendor's VISA is
installed. A vendor's goes before. Other programs can use the library when
they are told to, as with PYVISA_LIBRARY.")
set(CPACK_DEBIAN_CORVANE-VISA_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_CORVANE-VISA_PACKAGE_SUGGESTS corvane)
set(CPACK_DEBIAN_CORVANE-VISA_PACKAGE_CONTROL_EXTRA "${CMAKE_CURRENT_SOURCE_DIR}/debian/postinst")

include(CPack)
