# The Debian package: `cpack` makes it out of what is installed.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tolvane)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "tolvane maintainers <maintainers@tolvane.invalid>")
set(CPACK_DEBIAN_PACKAGE_SECTION database)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "upgrade the configuration parameter file of a database server")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"A database server keeps its settings in a configuration parameter file of
INI-like sections, which every release of the server wrote a little
differently. tolvane brings a file of any known format version, from 2.0 on,
up to the current one, step by step, and keeps the old file as a backup. It
also builds such a file out of the two files of the older legacy layout, and
sets single entries.
tolvane-preview shows beforehand what would change in which step, as a report,
a diff or JSON, and writes nothing.")

include(CPack)
