# Brings what cmake --install has put into the package's folder to Debian's form; CPack runs it before it packs.
set(doc ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/share/doc/tracelyn)
set(share ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/share)

string(TIMESTAMP year "%Y" UTC)
# As in a mail's head.
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(${CMAKE_CURRENT_LIST_DIR}/changelog.in ${doc}/changelog @ONLY)
configure_file(${CMAKE_CURRENT_LIST_DIR}/copyright.in ${doc}/copyright @ONLY)

file(RENAME ${share}/zsh/site-functions ${share}/zsh/vendor-completions)

file(GLOB pages ${share}/man/man1/*)
execute_process(COMMAND gzip -9n ${pages} ${doc}/changelog COMMAND_ERROR_IS_FATAL ANY)
