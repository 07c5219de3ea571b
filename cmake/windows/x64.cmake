set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(ONDURA_WINDOWS_PREFIX x86_64-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/toolchain.cmake)

# Programs of the build run in a Windows of its own, under its folder.
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../../scripts/wine ${CMAKE_BINARY_DIR}/wine)
