# What Debian asks of the staged files of a package, before it is made: change logs and manual pages
# are compressed, and programs and libraries look for libraries where the system has them.
file(GLOB_RECURSE texts ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*/usr/share/doc/*/changelog
                        ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*/usr/share/man/*.[1-9])
if(texts)
  execute_process(COMMAND gzip -9nf ${texts} COMMAND_ERROR_IS_FATAL ANY)
endif()
file(GLOB_RECURSE binaries ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*/usr/bin/*
                           ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*/usr/lib/*.so.*)
foreach(binary IN LISTS binaries)
  file(RPATH_REMOVE FILE ${binary})
endforeach()
