# SPDX-FileCopyrightText: 2026 The ZepGUI developers
# SPDX-License-Identifier: GPL-3.0-or-later

# Read by cpack: the packages that the program loads at run time, beside the libraries that it is linked to.
execute_process(COMMAND ${CPACK_ZEPGUI_QML_PACKAGES} OUTPUT_VARIABLE _packages
    OUTPUT_STRIP_TRAILING_WHITESPACE RESULT_VARIABLE _result)
if(NOT _result EQUAL 0)
    message(FATAL_ERROR "packaging/qml-packages found no package for an import (${_result})")
endif()
string(REPLACE "\n" ", " _packages "${_packages}")
# The pictures of the interface are SVG, which a plug-in of this package reads.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt6svg6, ${_packages}")
