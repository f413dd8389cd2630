# Compresses the manual pages and the changelog of a package, as Debian asks.
file(GLOB_RECURSE files ${CPACK_TEMPORARY_DIRECTORY}/*/share/man/man*/*
  ${CPACK_TEMPORARY_DIRECTORY}/*/share/doc/*/changelog)
foreach(file ${files})
  execute_process(COMMAND gzip -9nf ${file} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
