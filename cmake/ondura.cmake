# Flags and helpers that every target of the project shares.

add_library(ondura_flags INTERFACE)
target_include_directories(ondura_flags INTERFACE ${PROJECT_SOURCE_DIR}/src)
target_compile_options(ondura_flags INTERFACE -Wall -Wextra -Wconversion -Wshadow -Werror)
# g++ 12 takes an insertion into a std::string for overlapping copies, and the sum of two texts for one that can't
# be, once it inlines them.
target_compile_options(ondura_flags INTERFACE "$<$<CONFIG:Release>:-Wno-restrict;-Wno-stringop-overflow;-Wno-array-bounds>")
target_compile_definitions(ondura_flags INTERFACE ONDURA_VERSION="${PROJECT_VERSION}")
if(WIN32)
  # The oldest Windows that the calls are there for, and the process list from the library that has it there.
  target_compile_definitions(ondura_flags INTERFACE _WIN32_WINNT=0x0600 PSAPI_VERSION=1)
endif()
if(ONDURA_SANITIZE)
  target_compile_options(ondura_flags INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all
                                               -fno-omit-frame-pointer)
  target_link_options(ondura_flags INTERFACE -fsanitize=address,undefined)
endif()

# The JSON library of this system: headers alone, so good for Windows too. The cross compiler may not see the other
# headers beside them.
find_path(ONDURA_JSON_INCLUDE_DIR nlohmann/json.hpp PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH)
if(NOT ONDURA_JSON_INCLUDE_DIR)
  message(FATAL_ERROR "No nlohmann/json.hpp: run scripts/setup, or set ONDURA_JSON_INCLUDE_DIR to its folder")
endif()
add_library(ondura_json INTERFACE)
if(CMAKE_CROSSCOMPILING)
  file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/include)
  file(CREATE_LINK ${ONDURA_JSON_INCLUDE_DIR}/nlohmann ${CMAKE_BINARY_DIR}/include/nlohmann SYMBOLIC)
  target_include_directories(ondura_json SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/include)
else()
  target_include_directories(ondura_json SYSTEM INTERFACE ${ONDURA_JSON_INCLUDE_DIR})
endif()

# ondura_library(NAME FOLDER [LIBRARY...]): a static library of every .cpp file directly in FOLDER.
function(ondura_library name folder)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.cpp)
  if(sources)
    add_library(${name} STATIC ${sources})
    target_link_libraries(${name} PUBLIC ondura_flags ${ARGN})
  else()
    add_library(${name} INTERFACE)
    target_link_libraries(${name} INTERFACE ondura_flags ${ARGN})
  endif()
endfunction()

# windows_resources(PROGRAM EXECUTION_LEVEL DESCRIPTION): the program's version, the systems that it knows and the
# rights it asks for.
if(WIN32)
  enable_language(RC)
  function(windows_resources PROGRAM EXECUTION_LEVEL DESCRIPTION)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/windows/program.manifest.in ${PROGRAM}.manifest @ONLY)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/windows/program.rc.in ${PROGRAM}.rc @ONLY)
    set_property(SOURCE ${CMAKE_CURRENT_BINARY_DIR}/${PROGRAM}.rc APPEND
                 PROPERTY OBJECT_DEPENDS ${CMAKE_CURRENT_BINARY_DIR}/${PROGRAM}.manifest)
    target_sources(${PROGRAM} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${PROGRAM}.rc)
    target_include_directories(${PROGRAM} PRIVATE ${CMAKE_CURRENT_BINARY_DIR})
  endfunction()
endif()
