# Flags and the two functions that every floor's CMakeLists.txt uses.

if(WIN32)
  set(NMSHELL_PLATFORM win32)
else()
  set(NMSHELL_PLATFORM host)
endif()

# The settings of our own code; third-party code (GoogleTest) is built without them.
add_library(nmshell_flags INTERFACE)
target_include_directories(nmshell_flags INTERFACE "${PROJECT_SOURCE_DIR}")
target_compile_options(nmshell_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast -Wcast-qual)
if(NOT WIN32)
  # The SDK's interfaces have public non-virtual destructors, which no code calls.
  target_compile_options(nmshell_flags INTERFACE -Wnon-virtual-dtor)
endif()
if(NMSHELL_WERROR)
  target_compile_options(nmshell_flags INTERFACE -Werror)
endif()
if(NMSHELL_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
if(NMSHELL_FUZZ)
  # Every library, so that the fuzzer sees the code it is to reach.
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
if(NMSHELL_TSAN)
  add_compile_options(-fsanitize=thread)
  add_link_options(-fsanitize=thread)
  set(NMSHELL_TEST_PREFIX tsan.)
endif()
if(WIN32)
  # Nothing may lie beside the DLL, so the runtime libraries are linked in.
  add_link_options(-static -Wl,--dynamicbase,--high-entropy-va,--nxcompat)
  add_compile_options(-ffunction-sections -fdata-sections)
  add_link_options(-Wl,--gc-sections "$<$<NOT:$<CONFIG:Debug>>:-s>")
endif()

# nmshell_library(NAME SOURCES ... DEPENDS ...): one static library of our own code.
function(nmshell_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC nmshell_flags ${ARG_DEPENDS})
endfunction()

# GoogleTest is built from Debian's source package on both sides: there is no ready-made one for mingw-w64.
set(INSTALL_GTEST OFF)
set(BUILD_GMOCK OFF)
set(NMSHELL_GTEST_SOURCE /usr/src/googletest CACHE PATH "Sources of GoogleTest")
add_subdirectory("${NMSHELL_GTEST_SOURCE}" "${PROJECT_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL)

# nmshell_tests(NAME SOURCES ... DEPENDS ...): a GoogleTest program. Natively every test is one entry of ctest;
# through Wine a process start is dear, so there the whole program is one entry.
include(GoogleTest)
function(nmshell_tests name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE nmshell_flags ${ARG_DEPENDS} gtest gtest_main)
  if(WIN32)
    add_test(NAME ${name} COMMAND ${name})
  else()
    gtest_discover_tests(${name} TEST_PREFIX "${NMSHELL_TEST_PREFIX}${name}." DISCOVERY_TIMEOUT 60)
  endif()
endfunction()
