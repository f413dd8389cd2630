# Installs the manual pages and the completions.
install(FILES man/tolvik.1 man/tolvik-page.1 man/tolvik-standins.1
  DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES man/tvk.5 DESTINATION ${CMAKE_INSTALL_MANDIR}/man5)

# bash and fish find a completion by the name of the command.
set(TOLVIK_ZSH_DIRECTORY ${CMAKE_INSTALL_DATADIR}/zsh/site-functions CACHE STRING
  "directory of the completion for zsh; Debian's packages use share/zsh/vendor-completions")
foreach(command tolvik tolvik-page)
  install(FILES completions/tolvik.bash RENAME ${command}
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
  install(FILES completions/tolvik.fish RENAME ${command}.fish
    DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
endforeach()
install(FILES completions/_tolvik DESTINATION ${TOLVIK_ZSH_DIRECTORY})
