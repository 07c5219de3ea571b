# What the toolchain files of both word sizes share. ONDURA_WINDOWS_PREFIX names the compiler.

set(CMAKE_SYSTEM_NAME Windows)

# The compilers whose runtime has the standard library's clocks and locks.
set(CMAKE_C_COMPILER ${ONDURA_WINDOWS_PREFIX}-gcc-posix)
set(CMAKE_CXX_COMPILER ${ONDURA_WINDOWS_PREFIX}-g++-posix)
set(CMAKE_RC_COMPILER ${ONDURA_WINDOWS_PREFIX}-windres)

# Nothing of this system's own headers and libraries may slip in.
set(CMAKE_FIND_ROOT_PATH /usr/${ONDURA_WINDOWS_PREFIX})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# A program or library runs on a Windows that has no libraries of the compiler.
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
set(CMAKE_SHARED_LINKER_FLAGS_INIT -static)
set(CMAKE_MODULE_LINKER_FLAGS_INIT -static)

# Header-only packages of this system that the cross build takes from it.
list(APPEND CMAKE_MODULE_PATH ${CMAKE_CURRENT_LIST_DIR})
