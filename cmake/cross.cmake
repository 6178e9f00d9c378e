# Toolchains for other machines, of Debian's cross compilers; see scripts/test-cross. QUARN_CROSS, in
# the environment, names the machine: armhf, s390x or i386.
set(CMAKE_SYSTEM_NAME Linux)
set(machine $ENV{QUARN_CROSS})
if(machine STREQUAL "armhf")
  set(CMAKE_SYSTEM_PROCESSOR arm)
  set(triple arm-linux-gnueabihf)
  set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm -L /usr/${triple})
elseif(machine STREQUAL "s390x")
  set(CMAKE_SYSTEM_PROCESSOR s390x)
  set(triple s390x-linux-gnu)
  set(CMAKE_CROSSCOMPILING_EMULATOR qemu-s390x -L /usr/${triple})
elseif(machine STREQUAL "i386") # with the libraries beside its compiler; as it is, if this kernel can
  set(CMAKE_SYSTEM_PROCESSOR i686)
  set(triple i686-linux-gnu)
  set(CMAKE_EXE_LINKER_FLAGS_INIT "-Wl,--dynamic-linker=/usr/${triple}/lib/ld-linux.so.2 \
-Wl,--disable-new-dtags,-rpath,/usr/${triple}/lib")
  execute_process(
    COMMAND /usr/${triple}/lib/ld-linux.so.2 --version
    RESULT_VARIABLE unable
    OUTPUT_QUIET ERROR_QUIET)
  if(unable)
    set(CMAKE_CROSSCOMPILING_EMULATOR qemu-i386)
  endif()
else()
  message(FATAL_ERROR "QUARN_CROSS is '${machine}', not armhf, s390x or i386")
endif()
set(CMAKE_C_COMPILER ${triple}-gcc)
set(CMAKE_CXX_COMPILER ${triple}-g++)
set(CMAKE_FIND_ROOT_PATH /usr/${triple})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
