# SPDX-FileCopyrightText: 2026 The ZepGUI developers
# SPDX-License-Identifier: GPL-3.0-or-later

# What every target of the project is compiled with. Qt's own headers are system headers and stay out of it.
add_library(zepgui_warnings INTERFACE)
if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    target_compile_options(zepgui_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
    if(ZEPGUI_WERROR)
        target_compile_options(zepgui_warnings INTERFACE -Werror)
    endif()
endif()
target_compile_definitions(zepgui_warnings INTERFACE QT_NO_CAST_TO_ASCII QT_NO_FOREACH)

if(ZEPGUI_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endif()
if(ZEPGUI_COVERAGE)
    # Everywhere, for a test's own copy of an inline function may be the one that the linker keeps.
    add_compile_options(--coverage)
    add_link_options(--coverage)
endif()
if(ZEPGUI_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()
