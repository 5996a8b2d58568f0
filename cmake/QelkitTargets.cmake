# Flags shared by every target, and the two functions that the subsystem directories call.
include_guard(GLOBAL)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
if(NOT CMAKE_RUNTIME_OUTPUT_DIRECTORY)  # a project around this one may have its own
  set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
endif()

add_library(qelkit_flags INTERFACE)
target_include_directories(qelkit_flags INTERFACE "${PROJECT_SOURCE_DIR}/source")
if(MSVC)
  target_compile_options(qelkit_flags INTERFACE /W4 /utf-8 /permissive- /EHsc $<$<BOOL:${QELKIT_WERROR}>:/WX>)
else()
  # GCC 12 sees overlapping copies inside std::string where there are none.
  target_compile_options(qelkit_flags INTERFACE -Wall -Wextra -Wpedantic
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict> $<$<BOOL:${QELKIT_WERROR}>:-Werror>)
endif()
# The same bytes from every build folder: no path of it and no time of day gets into them.
if(MSVC)
  target_link_options(qelkit_flags INTERFACE /Brepro)
else()
  target_compile_options(qelkit_flags INTERFACE
    -ffile-prefix-map=${PROJECT_SOURCE_DIR}=. -ffile-prefix-map=${PROJECT_BINARY_DIR}=build)
  if(MINGW)
    target_link_options(qelkit_flags INTERFACE -Wl,--no-insert-timestamp)
  endif()
endif()
if(QELKIT_SANITIZE)
  set(sanitizers -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_compile_options(qelkit_flags INTERFACE ${sanitizers})
  target_link_options(qelkit_flags INTERFACE ${sanitizers})
endif()

# qelkit_sources(PORTABLE files... WINDOWS files... PUBLIC_HEADERS files...)
# Adds the calling directory's files to the library. PORTABLE sources call no system function and
# are built natively as well; WINDOWS sources only for Windows. PUBLIC_HEADERS are installed;
# those named again after PORTABLE_HEADERS must also compile without Windows.
function(qelkit_sources)
  cmake_parse_arguments(arg "" "" "PORTABLE;WINDOWS;PUBLIC_HEADERS;PORTABLE_HEADERS" ${ARGN})
  if(arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "qelkit_sources: unexpected ${arg_UNPARSED_ARGUMENTS}")
  endif()
  foreach(kind PORTABLE WINDOWS PUBLIC_HEADERS PORTABLE_HEADERS)
    list(TRANSFORM arg_${kind} PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/")
    set_property(GLOBAL APPEND PROPERTY QELKIT_${kind} ${arg_${kind}})
  endforeach()
endfunction()

# qelkit_runtime_dlls(target): copies the compiler's runtime DLLs beside the target and names them
# in the property QELKIT_RUNTIME_DLLS. Library, tests and callers share one C++ runtime, so that
# exceptions and standard-library objects cross the boundary.
function(qelkit_runtime_dlls target)
  if(NOT MINGW)
    return()
  endif()
  set(found)
  foreach(dll libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${dll}
      OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    get_filename_component(path "${path}" REALPATH)
    list(APPEND found "${path}")
    configure_file("${path}" "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${dll}" COPYONLY)
  endforeach()
  set_target_properties(${target} PROPERTIES QELKIT_RUNTIME_DLLS "${found}")
endfunction()
