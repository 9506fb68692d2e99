# Flags and the functions that every floor's CMakeLists.txt uses.

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
# No function static of ours is reached by two threads at its first use, and the guard around one brings a thread library
# into the DLL that loses a thread-local slot and handles at every unloading.
target_compile_options(nmshell_flags INTERFACE -fno-threadsafe-statics)
if(NOT WIN32)
  # The SDK's interfaces have public non-virtual destructors, which no code calls.
  target_compile_options(nmshell_flags INTERFACE -Wnon-virtual-dtor)
endif()
if(NMSHELL_WERROR)
  target_compile_options(nmshell_flags INTERFACE -Werror)
endif()
if(NMSHELL_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  # At a fixed address: setting the 640,000 addresses in the sanitizers' tables is a quarter of what a short program takes.
  add_link_options(-fsanitize=address,undefined -no-pie)
endif()
if(NMSHELL_FUZZ)
  # Every library, so that the fuzzer sees the code it is to reach.
  add_compile_options(-fsanitize=fuzzer-no-link
    "-fsanitize-coverage-ignorelist=${PROJECT_SOURCE_DIR}/fuzz/uncounted.txt")
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
  target_compile_options(nmshell_flags INTERFACE -fstack-protector-strong)
  add_link_options(-fstack-protector-strong)
  add_link_options(-Wl,--gc-sections)
  # The same bytes whenever and wherever they are built: no time stamps, and no folders in what the debugger reads.
  add_link_options(-Wl,--no-insert-timestamp)
  add_compile_options("-ffile-prefix-map=${PROJECT_BINARY_DIR}=build" "-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=")
  # What ships has its symbols beside it (nmshell_ships); everything else goes without.
  add_compile_options($<$<NOT:$<CONFIG:Debug>>:-g1>)
  add_link_options("$<$<NOT:$<OR:$<CONFIG:Debug>,$<BOOL:$<TARGET_PROPERTY:NMSHELL_SHIPS>>>>:-s>")
endif()

# nmshell_ships(TARGET): a program or the DLL as users get it, with its version resource (resources/) and with its symbols in
# symbols/FILE.debug beside it, where its name leads a debugger.
function(nmshell_ships target)
  if(NOT WIN32)
    return()
  endif()
  target_sources(${target} PRIVATE $<TARGET_OBJECTS:${target}_resources>)
  set_target_properties(${target} PROPERTIES NMSHELL_SHIPS ON)
  if(NOT CMAKE_BUILD_TYPE STREQUAL Debug)
    set(symbols "$<TARGET_FILE_DIR:${target}>/symbols/$<TARGET_FILE_NAME:${target}>.debug")
    # Without the variable objcopy puts the time in again.
    set(objcopy "${CMAKE_COMMAND}" -E env SOURCE_DATE_EPOCH=0 "${CMAKE_OBJCOPY}")
    add_custom_command(TARGET ${target} POST_BUILD
      COMMAND "${CMAKE_COMMAND}" -E make_directory "$<TARGET_FILE_DIR:${target}>/symbols"
      COMMAND ${objcopy} --only-keep-debug "$<TARGET_FILE:${target}>" "${symbols}"
      COMMAND ${objcopy} --strip-all "--add-gnu-debuglink=${symbols}" "$<TARGET_FILE:${target}>")
  endif()
endfunction()

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
if(NMSHELL_SANITIZE)
  target_compile_options(gtest PRIVATE -fno-sanitize=undefined)  # 19,000 entries in the tables that each start registers
endif()

# Labels of tests: wine for what runs through it; natively fast, or slow for what the option --fast of scripts/test.sh leaves out.
if(WIN32)
  set(NMSHELL_TEST_LABEL wine)
else()
  set(NMSHELL_TEST_LABEL fast)
endif()

# nmshell_check(NAME COMMAND...): an entry of ctest.
function(nmshell_check name)
  add_test(NAME ${name} COMMAND ${ARGN})
  set_tests_properties(${name} PROPERTIES LABELS ${NMSHELL_TEST_LABEL})
endfunction()

# nmshell_tests(NAME COMMON ... HOST ... WIN32 ... DEPENDS ... [SLOW]): a GoogleTest program of the sources for both sides and for
# the one that is built; where there are none, there is no program. Natively every test is one entry of ctest; through Wine a
# process start is dear, so there the whole program is one.
include(GoogleTest)
function(nmshell_tests name)
  cmake_parse_arguments(ARG "SLOW" "" "COMMON;HOST;WIN32;DEPENDS" ${ARGN})
  string(TOUPPER ${NMSHELL_PLATFORM} side)
  set(sources ${ARG_COMMON} ${ARG_${side}})
  if(NOT sources)
    return()
  endif()
  add_executable(${name} ${sources})
  target_link_libraries(${name} PRIVATE nmshell_flags testing ${ARG_DEPENDS} testing_host gtest gtest_main)
  set_target_properties(${name} PROPERTIES CXX_CLANG_TIDY "")  # names are checked of what ships
  # Tables name only the members that a row is about.
  target_compile_options(${name} PRIVATE -Wno-missing-field-initializers)
  if(WIN32)
    nmshell_check(${name} ${name})
  else()
    gtest_discover_tests(${name} TEST_PREFIX "${NMSHELL_TEST_PREFIX}${name}." DISCOVERY_TIMEOUT 60
      PROPERTIES LABELS $<IF:$<BOOL:${ARG_SLOW}>,slow,fast>)
  endif()
endfunction()
