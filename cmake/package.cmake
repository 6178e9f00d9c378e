# Debian packages, one for each component: `cpack -G DEB` in the build folder. Their files go to
# /usr, whatever the prefix of the build.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_VENDOR "The libquarn maintainers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package has its own
set(CPACK_PACKAGE_CONTACT
    "The libquarn maintainers <maintainers@users.noreply.c-seed-ed8ba60d.example>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL library development tool)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/finish_package.cmake)

set(library libquarn${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME ${library})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_SOURCE_DIR}/cmake/library_depends.cmake)
set(CPACK_QUARN_SCRATCH ${CMAKE_BINARY_DIR})
foreach(target IN LISTS libraries)
  list(APPEND CPACK_QUARN_LIBRARIES
       ${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/lib${target}.so.${PROJECT_VERSION})
endforeach()
set(CPACK_DEBIAN_LIBRARY_DESCRIPTION "library that reads and writes SML, the language of meters
Encodes, parses and frames the messages of SML (Smart Message Language), which
electricity meters and meter gateways speak.")
file(WRITE ${CMAKE_BINARY_DIR}/debian/shlibs
     "libquarn ${PROJECT_VERSION_MAJOR} ${library} (>= ${PROJECT_VERSION})\n"
     "libvorn ${PROJECT_VERSION_MAJOR} ${library} (>= ${PROJECT_VERSION})\n")
file(WRITE ${CMAKE_BINARY_DIR}/debian/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${CMAKE_BINARY_DIR}/debian/shlibs
                                               ${CMAKE_BINARY_DIR}/debian/triggers)

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libquarn-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${library} (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "files to compile programs with libquarn
Headers, and what CMake and pkg-config need to find the library that reads and
writes SML (Smart Message Language).")

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME quarn)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TOOL_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS "${library} (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_DEBIAN_TOOL_DESCRIPTION "turns the bytes of an electricity meter into readings
Reads SML (Smart Message Language) from files, serial devices and networks and
prints readings as text, JSON or CSV; also encodes, frames and checks it.")

# Each package brings its change log and copyright.
foreach(component library development tool)
  string(TOUPPER ${component} upper)
  set(doc share/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
  install(FILES cmake/debian/copyright DESTINATION ${doc} COMPONENT ${component})
  install(FILES cmake/debian/changelog DESTINATION ${doc} COMPONENT ${component})
endforeach()
include(CPack)
