# SPDX-License-Identifier: GPL-3.0-or-later
# What "cmake --install" puts where: programs, manual pages, completion, documents and what a desktop and udev read.
include(GNUInstallDirs)

install(TARGETS marrowickgraph marrowick marrowick-draw marrowick-sim RUNTIME)

file(GLOB pages CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/packaging/man/*.1)
install(FILES ${pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES packaging/marrowickgraph.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES packaging/icons/marrowickgraph.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(FILES packaging/mime/marrowick.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages)
install(FILES packaging/metainfo/marrowickgraph.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR}
        PATTERN "architecture.md" EXCLUDE)

# Where udev looks does not follow the prefix.
set(MG_UDEV_RULES_DIR "lib/udev/rules.d" CACHE STRING "Folder of the udev rule; relative to the prefix unless absolute")
install(FILES packaging/udev/70-marrowick.rules DESTINATION ${MG_UDEV_RULES_DIR})

# Each script is what the program that is installed prints.
set(completion ${CMAKE_BINARY_DIR}/completion)
set(scripts "")
foreach(shell bash zsh fish)
  add_custom_command(OUTPUT ${completion}/${shell}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${completion}
    COMMAND marrowick completion --shell ${shell} > ${completion}/${shell}
    DEPENDS marrowick VERBATIM)
  list(APPEND scripts ${completion}/${shell})
endforeach()
add_custom_target(completion ALL DEPENDS ${scripts})
install(FILES ${completion}/bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME marrowick)
install(FILES ${completion}/zsh DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions RENAME _marrowick)
install(FILES ${completion}/fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d RENAME marrowick.fish)
