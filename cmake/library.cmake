# What the shared libraries have in common: a version, a linker script that names and versions what
# is exported, and no symbol left to chance.

# SONAME carries the version of the interface: the major number, from 1.0.0 on.
function(quarn_shared_library target script)
  set(script ${CMAKE_CURRENT_SOURCE_DIR}/${script})
  set_target_properties(${target} PROPERTIES
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR} LINK_DEPENDS ${script})
  target_link_options(${target} PRIVATE LINKER:--version-script=${script})
endfunction()
