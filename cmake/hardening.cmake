# Makes a target as hard to exploit as Debian's packages are: buffers on the stack are guarded and
# never skipped, sizes are checked where they are known, addresses of functions are written once,
# and everything may be loaded anywhere. Optimised configurations only: without optimisation, or
# beside a sanitizer, the checks of sizes do not work.
include(CheckCXXCompilerFlag)
include(CheckPIESupported)
check_pie_supported()

set(quarn_hardening -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
foreach(flag -fstack-protector-strong -fstack-clash-protection)
  string(MAKE_C_IDENTIFIER QUARN_HAS${flag} has)
  check_cxx_compiler_flag(${flag} ${has})
  if(${has})
    list(APPEND quarn_hardening ${flag})
  endif()
endforeach()

function(quarn_harden target)
  set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
  if(QUARN_HARDENING)
    set(optimised $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
    target_compile_options(${target} PRIVATE "$<${optimised}:${quarn_hardening}>")
    target_link_options(${target} PRIVATE "$<${optimised}:LINKER:-z,relro,-z,now>")
  endif()
endfunction()
