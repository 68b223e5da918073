# SPDX-License-Identifier: MIT
# Two Debian packages from one build, one for each install component:
#   quorvane   the window, for a desktop
#   quorvaned  the service and the simulated server, for a machine without a display
#   cmake -S . -B build-pkg -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX=/usr
#   cmake --build build-pkg && (cd build-pkg && cpack)
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quorvane)
set(CPACK_PACKAGE_VENDOR "The Quorvane developers")
set(CPACK_PACKAGE_CONTACT "The Quorvane developers <maintainers@quorvane.org>")

# Every file installed belongs to one of the two packages: a rule without a component would
# silently fall out of both.
get_cmake_property(CPACK_COMPONENTS_ALL COMPONENTS)
list(SORT CPACK_COMPONENTS_ALL)
if(NOT CPACK_COMPONENTS_ALL STREQUAL "quorvane;quorvaned")
    message(FATAL_ERROR "Install components are ${CPACK_COMPONENTS_ALL}; give every install() "
                        "rule COMPONENT quorvane (the window) or COMPONENT quorvaned (the service)")
endif()
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_QUORVANE_PACKAGE_NAME quorvane)
set(CPACK_DEBIAN_QUORVANED_PACKAGE_NAME quorvaned)

# The first line of each is the package's summary.
set(CPACK_DEBIAN_QUORVANE_DESCRIPTION
    "keep order on a game server through its remote console (window)
Quorvane keeps order on a dedicated server of Medal of Honor: Allied Assault 1.11 with
nobody at the keyboard. It polls the player list over the game's UDP remote console,
follows each player from scan to scan, and enforces the operator's policies.
.
This package holds the desktop program, which shows the players, the figures and the
server's replies in one window. For a machine without a display, and to watch
servers as systemd user services, there is quorvaned, which also brings
quorvane-sim, a simulated server for trying either out.")
set(CPACK_DEBIAN_QUORVANED_DESCRIPTION
    "keep order on a game server through its remote console (service)
Quorvane keeps order on a dedicated server of Medal of Honor: Allied Assault 1.11 with
nobody at the keyboard. It polls the player list over the game's UDP remote console,
follows each player from scan to scan, and enforces the operator's policies.
.
This package holds quorvaned, the same engine without a window, for servers: systemd
user units run one instance for each game server, report to the journal and reload
their lists in place. It needs no graphical libraries. quorvane-sim, a simulated
server, is included.")

# The window does not need the service; the simulated server comes with the service.
set(CPACK_DEBIAN_QUORVANE_PACKAGE_SUGGESTS quorvaned)
# Up to 1.2, one package named quorvane held the simulated server, the units and their
# manual pages, which are the service's now.
set(CPACK_DEBIAN_QUORVANED_PACKAGE_REPLACES "quorvane (<< 1.3.0)")
set(CPACK_DEBIAN_QUORVANED_PACKAGE_BREAKS "quorvane (<< 1.3.0)")

# The units name the programs by their installed paths, so the packages keep the same prefix.
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION net)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# Each package depends on the shared libraries its own programs link (dpkg-shlibdeps), so
# the service's pulls in no Qt GUI or Widgets library.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
include(CPack)
