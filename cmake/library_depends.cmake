# Which packages the library package depends on. CPack finds that out too, but would then have its
# scripts call ldconfig, which Debian leaves to a trigger.
if(CPACK_GENERATOR STREQUAL DEB)
  file(WRITE ${CPACK_QUARN_SCRATCH}/debian/control "Source: quarn\n\nPackage: quarn\nArchitecture: any\n")
  execute_process(COMMAND dpkg-shlibdeps --ignore-missing-info -l${CPACK_QUARN_SCRATCH}/lib -O ${CPACK_QUARN_LIBRARIES}
                  WORKING_DIRECTORY ${CPACK_QUARN_SCRATCH}
                  OUTPUT_VARIABLE depends ERROR_QUIET OUTPUT_STRIP_TRAILING_WHITESPACE
                  COMMAND_ERROR_IS_FATAL ANY)
  string(REPLACE "shlibs:Depends=" "" CPACK_DEBIAN_LIBRARY_PACKAGE_DEPENDS "${depends}")
endif()
