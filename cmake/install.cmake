# What is installed, and where, in three components: library, development and tool. Everything that
# is found by its place (the tool's library, the package files' prefix) is found relative to where
# it stands, so that an installed tree may be moved.
include(CMakePackageConfigHelpers)

set(libraries quarn)
if(NOT QUARN_FRAMEWORK)
  list(PREPEND libraries vorn)
endif()
set_target_properties(quarn PROPERTIES INSTALL_RPATH $ORIGIN)
install(TARGETS ${libraries} EXPORT quarn
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)

# find_package(quarn)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/quarn)
install(EXPORT quarn NAMESPACE quarn:: FILE quarn-config.cmake DESTINATION ${package_dir}
        COMPONENT development)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/quarn-config-version.cmake
                                 COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_BINARY_DIR}/quarn-config-version.cmake DESTINATION ${package_dir}
        COMPONENT development)

# pkg-config quarn
set(pc_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX}/${pc_dir}
           OUTPUT_VARIABLE pc_prefix)
# Vorn comes along, or else the name of the framework's header.
set(pc_framework "Requires: vorn\nCflags: -I\${includedir}")
if(QUARN_FRAMEWORK)
  set(pc_framework
      "Cflags: -I\${includedir} '-DQUARN_FRAMEWORK_HEADER=\"${QUARN_FRAMEWORK}\"'")
endif()
foreach(library IN LISTS libraries)
  configure_file(cmake/${library}.pc.in ${library}.pc @ONLY)
  install(FILES ${CMAKE_BINARY_DIR}/${library}.pc DESTINATION ${pc_dir} COMPONENT development)
endforeach()

# The headers: quarn/quarn.h and all that it includes.
install(CODE "set(QUARN_ROOT \"${PROJECT_SOURCE_DIR}\")
set(QUARN_INCLUDEDIR \"${CMAKE_INSTALL_INCLUDEDIR}\")" COMPONENT development)
install(SCRIPT cmake/install_headers.cmake COMPONENT development)

if(QUARN_BUILD_TOOL)
  cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_LIBDIR BASE_DIRECTORY ${CMAKE_INSTALL_FULL_BINDIR}
             OUTPUT_VARIABLE from_bin)
  set_target_properties(quarn_program PROPERTIES INSTALL_RPATH "$ORIGIN/${from_bin}")
  install(TARGETS quarn_program RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tool)
endif()

if(QUARN_BUILD_TOOL AND NOT CMAKE_CROSSCOMPILING)
  # Manual page and completion are made of what the program says to --help.
  find_package(Python3 REQUIRED COMPONENTS Interpreter)
  set(manual ${Python3_EXECUTABLE} ${PROJECT_SOURCE_DIR}/cmake/manual.py)
  set(manual_template ${PROJECT_SOURCE_DIR}/docs/quarn.1.in)
  add_custom_command(
    OUTPUT ${CMAKE_BINARY_DIR}/quarn.1 ${CMAKE_BINARY_DIR}/quarn.bash
    COMMAND ${manual} man $<TARGET_FILE:quarn_program> ${PROJECT_VERSION} ${manual_template}
            > ${CMAKE_BINARY_DIR}/quarn.1
    COMMAND ${manual} bash $<TARGET_FILE:quarn_program> > ${CMAKE_BINARY_DIR}/quarn.bash
    DEPENDS quarn_program cmake/manual.py ${manual_template} VERBATIM)
  add_custom_target(quarn_manual ALL DEPENDS ${CMAKE_BINARY_DIR}/quarn.1)
  install(FILES ${CMAKE_BINARY_DIR}/quarn.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
          COMPONENT tool)
  install(FILES ${CMAKE_BINARY_DIR}/quarn.bash RENAME quarn COMPONENT tool
          DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
endif()
