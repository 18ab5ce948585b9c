# Windows programs made on Linux with mingw-w64 and run there with Wine. Included by the toolchain
# file of each word size, which sets VANTORA_MINGW to the compilers' prefix.
set(CMAKE_SYSTEM_NAME Windows)
# The variants with POSIX threads, without which there is no std::thread and std::mutex.
set(CMAKE_C_COMPILER ${VANTORA_MINGW}-gcc-posix)
set(CMAKE_CXX_COMPILER ${VANTORA_MINGW}-g++-posix)
set(CMAKE_RC_COMPILER ${VANTORA_MINGW}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${VANTORA_MINGW})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_CROSSCOMPILING_EMULATOR
  ${CMAKE_CURRENT_LIST_DIR}/../tests/windows/run-in-wine ${CMAKE_BINARY_DIR}/wine)
