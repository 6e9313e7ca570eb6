# What is installed beside the programs: manual pages, completion, and what belongs in the documentation folder.

find_program(GZIP gzip REQUIRED)

# install_compressed(SOURCE NAME FOLDER): as the distribution wants it, and without the time of the build.
function(install_compressed source name folder)
  set(compressed ${CMAKE_CURRENT_BINARY_DIR}/compressed/${name}.gz)
  add_custom_command(OUTPUT ${compressed}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_CURRENT_BINARY_DIR}/compressed
    COMMAND ${GZIP} --best --no-name --stdout ${CMAKE_SOURCE_DIR}/${source} > ${compressed}
    DEPENDS ${source}
    VERBATIM)
  add_custom_target(${name}_gz ALL DEPENDS ${compressed})
  install(FILES ${compressed} DESTINATION ${folder})
endfunction()

set(TOLVANE_ZSH_FOLDER ${CMAKE_INSTALL_DATADIR}/zsh/site-functions CACHE STRING "Where the completion for zsh goes")
set(bash_folder ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)

install_compressed(man/tolvane.1 tolvane.1 ${CMAKE_INSTALL_MANDIR}/man1)
install_compressed(man/tolvane-preview.1 tolvane-preview.1 ${CMAKE_INSTALL_MANDIR}/man1)
install_compressed(man/tolvane.qpx.5 tolvane.qpx.5 ${CMAKE_INSTALL_MANDIR}/man5)
install_compressed(packaging/changelog changelog ${CMAKE_INSTALL_DOCDIR})
install(FILES packaging/copyright DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES docs/preview.schema.json DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES completion/tolvane.bash DESTINATION ${bash_folder} RENAME tolvane)
# bash looks the completion of a program up by its name.
install(FILES completion/tolvane.bash DESTINATION ${bash_folder} RENAME tolvane-preview)
install(FILES completion/_tolvane DESTINATION ${TOLVANE_ZSH_FOLDER})
