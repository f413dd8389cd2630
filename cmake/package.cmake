# The Debian package, which script/package makes of the installed files.
set(TOLVIK_CONTACT "The tolvik authors <authors@tolvik.example>" CACHE STRING "maintainer of the package")
string(TIMESTAMP CHANGELOG_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(cmake/changelog.in changelog @ONLY)
file(GLOB LICENCES CONFIGURE_DEPENDS LICENSE page/*.licence)
file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/copyright "")
foreach(licence ${LICENCES})
  file(READ ${licence} text)
  file(APPEND ${CMAKE_CURRENT_BINARY_DIR}/copyright "${text}\n")
endforeach()
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/changelog ${CMAKE_CURRENT_BINARY_DIR}/copyright
  DESTINATION ${CMAKE_INSTALL_DOCDIR})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT ${TOLVIK_CONTACT})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "report where symbols of object files are used and what they link")
set(CPACK_PACKAGE_DESCRIPTION "tolvik reads object files and libraries of several toolchains through the
dump programs of these toolchains. It reports where a symbol is defined,
where it is referred to, and which object files it brings into a link,
with their sizes.
.
The package has stand-ins for the dump programs. They read ELF, COFF and
other objects, and run if the program of the vendor is not on PATH.")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "binutils, sensible-utils") # ar
set(CPACK_DEBIAN_PACKAGE_SUGGESTS xdg-utils)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_SOURCE_DIR}/cmake/compress.cmake)
include(CPack)
