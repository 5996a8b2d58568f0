# GoogleTest and the functions that the test directories call.
include_guard(GLOBAL)

if(WIN32)
  # Debian has GoogleTest for the build machine only; its sources are built for Windows here.
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  set(BUILD_GMOCK OFF CACHE BOOL "" FORCE)
  set(gtest_force_shared_crt ON CACHE BOOL "" FORCE)
  set(QELKIT_GOOGLETEST_SOURCE "/usr/src/googletest" CACHE PATH "GoogleTest's sources")
  add_subdirectory("${QELKIT_GOOGLETEST_SOURCE}" "${CMAKE_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL)
  add_library(qelkit_gtest ALIAS gtest)
else()
  find_package(GTest REQUIRED)
  add_library(qelkit_gtest ALIAS GTest::gtest)
endif()

set(QELKIT_TEST_TIMEOUT 300)

# qelkit_test_program(name LINK what SOURCES files... [ENVIRONMENT NAME=VALUE...])
# One program with the shared main and one CTest entry of the same name.
function(qelkit_test_program name)
  cmake_parse_arguments(arg "" "" "LINK;SOURCES;ENVIRONMENT" ${ARGN})
  add_executable(${name} ${arg_SOURCES} "${PROJECT_SOURCE_DIR}/tests/support/main.cpp")
  target_include_directories(${name} PRIVATE
    "${PROJECT_SOURCE_DIR}/tests" "${PROJECT_SOURCE_DIR}/bench")
  target_compile_definitions(${name} PRIVATE
    QELKIT_TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data")
  target_link_libraries(${name} PRIVATE ${arg_LINK} qelkit_flags qelkit_gtest)
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES
    TIMEOUT ${QELKIT_TEST_TIMEOUT} ENVIRONMENT "${arg_ENVIRONMENT}"
    FAIL_REGULAR_EXPRESSION "0 tests ran")
endfunction()

# qelkit_tests(directory
#   PORTABLE files...          exported, needs no system: natively and against the DLL
#   WINDOWS files...           exported: against the DLL
#   INTERNAL files...          private and portable: natively and linked with the objects
#   INTERNAL_WINDOWS files...  private: linked with the objects)
function(qelkit_tests directory)
  cmake_parse_arguments(arg "" "" "PORTABLE;WINDOWS;INTERNAL;INTERNAL_WINDOWS" ${ARGN})
  if(arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "qelkit_tests: unexpected ${arg_UNPARSED_ARGUMENTS}")
  endif()
  if(NOT WIN32)
    set(sources ${arg_PORTABLE} ${arg_INTERNAL})
    if(sources)
      qelkit_test_program(${directory}_tests LINK qelkit_static SOURCES ${sources})
    endif()
    return()
  endif()
  set(exported ${arg_PORTABLE} ${arg_WINDOWS})
  if(exported)
    qelkit_test_program(${directory}_tests LINK QELKIT2_64 SOURCES ${exported})
  endif()
  set(internal ${arg_INTERNAL} ${arg_INTERNAL_WINDOWS})
  list(TRANSFORM internal PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/")
  set_property(GLOBAL APPEND PROPERTY QELKIT_INTERNAL_TESTS ${internal})
endfunction()
