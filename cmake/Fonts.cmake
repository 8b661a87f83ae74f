# SPDX-FileCopyrightText: 2026 The ZepGUI developers
# SPDX-License-Identifier: GPL-3.0-or-later

# The two fonts of the interface come from npm packages under the Open Font License, pinned with their integrity
# in package-lock.json. They are installed at configure time and enter the resources under the names that
# qml/singletons/Style.qml gives; no font file is kept in the repository.
set(ZEPGUI_FONT_DIR ${CMAKE_CURRENT_BINARY_DIR}/fonts)
set(_barlow ${CMAKE_CURRENT_SOURCE_DIR}/node_modules/@expo-google-fonts/barlow/400Regular/Barlow_400Regular.ttf)
set(_roboto_mono
    ${CMAKE_CURRENT_SOURCE_DIR}/node_modules/@expo-google-fonts/roboto-mono/400Regular/RobotoMono_400Regular.ttf)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS package-lock.json)

set(_npm_stamp ${CMAKE_CURRENT_BINARY_DIR}/npm-ci.stamp)
if(NOT EXISTS ${_barlow} OR NOT EXISTS ${_roboto_mono}
   OR ${CMAKE_CURRENT_SOURCE_DIR}/package-lock.json IS_NEWER_THAN ${_npm_stamp})
    # On Windows a shell script of the plain name lies beside npm.cmd, and cannot be run.
    find_program(NPM_EXECUTABLE NAMES npm.cmd npm NAMES_PER_DIR)
    if(NOT NPM_EXECUTABLE)
        message(FATAL_ERROR "npm is needed to install the fonts (Barlow, Roboto Mono) and was not found. Install Node.js with npm.")
    endif()
    message(STATUS "Installing the fonts with npm ci")
    execute_process(COMMAND ${NPM_EXECUTABLE} ci --ignore-scripts --no-audit --no-fund
                    WORKING_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR} RESULT_VARIABLE _npm_result)
    if(NOT _npm_result EQUAL 0)
        message(FATAL_ERROR "npm ci failed (${_npm_result}): the fonts of the interface are not at hand.")
    endif()
    file(TOUCH ${_npm_stamp})
endif()
file(MAKE_DIRECTORY ${ZEPGUI_FONT_DIR})
file(COPY_FILE ${_barlow} ${ZEPGUI_FONT_DIR}/Barlow-Regular.ttf ONLY_IF_DIFFERENT)
file(COPY_FILE ${_roboto_mono} ${ZEPGUI_FONT_DIR}/RobotoMono-VariableFont.ttf ONLY_IF_DIFFERENT)
