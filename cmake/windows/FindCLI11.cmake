# CLI11 is headers alone, so those of this system serve a cross build. They are linked into a folder of their
# own: the folder they lie in holds the headers of this system's C library too.

set(CLI11_HEADERS /usr/include/CLI)
if(EXISTS ${CLI11_HEADERS}/CLI.hpp)
  set(CLI11_FOUND TRUE)
  if(NOT TARGET CLI11::CLI11)
    file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/headers)
    file(CREATE_LINK ${CLI11_HEADERS} ${CMAKE_BINARY_DIR}/headers/CLI SYMBOLIC)
    add_library(CLI11::CLI11 INTERFACE IMPORTED GLOBAL)
    target_include_directories(CLI11::CLI11 SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/headers)
  endif()
else()
  set(CLI11_FOUND FALSE)
endif()
