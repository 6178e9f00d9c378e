# What the two libraries have in common: a version, a linker script that names and versions what is
# exported, and no symbol left to chance. BUILD_SHARED_LIBS says whether they are shared ones.

# SONAME carries the version of the interface: the major number, from 1.0.0 on. The flags are the
# library's own: whoever links it, static or not, gets none of them. What a library calls of itself
# is its own, so that it can be inlined. Static and shared libraries are compiled alike (no symbol
# tells which), so that a compiler cache has the one from the other.
function(quarn_library target script)
  set(script ${CMAKE_CURRENT_SOURCE_DIR}/${script})
  add_library(quarn::${target} ALIAS ${target})
  target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
                                              $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  target_compile_features(${target} PUBLIC cxx_std_17)
  target_compile_options(${target} PRIVATE ${quarn_warnings} -fno-semantic-interposition)
  target_link_options(${target} PRIVATE LINKER:-Bsymbolic-functions,--version-script=${script})
  set_target_properties(${target} PROPERTIES
    DEFINE_SYMBOL "" VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR} LINK_DEPENDS ${script})
  quarn_harden(${target})
endfunction()
