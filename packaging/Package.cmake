# SPDX-License-Identifier: MIT
# A Debian package of everything that `cmake --install` puts in place:
#   cmake -S . -B build-pkg -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX=/usr
#   cmake --build build-pkg && (cd build-pkg && cpack)
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quorvane)
set(CPACK_PACKAGE_VENDOR "The Quorvane developers")
set(CPACK_PACKAGE_CONTACT "The Quorvane developers <maintainers@quorvane.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "keep order on a game server through its remote console")
set(CPACK_PACKAGE_DESCRIPTION
    "Quorvane keeps order on a dedicated server of Medal of Honor: Allied Assault 1.11 with
nobody at the keyboard. It polls the player list over the game's UDP remote console,
follows each player from scan to scan, and enforces the operator's policies.
It runs as a desktop window, or without a display as a systemd user service,
one instance for each server. quorvane-sim, a simulated server, is included.")
# The units name the program by its installed path, so the package keeps the same prefix.
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION net)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# The dependencies are those of the shared libraries the programs link (dpkg-shlibdeps).
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
include(CPack)
