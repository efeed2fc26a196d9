# Compiler settings of every target, and the function with which layers declare theirs.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 99)
set(CMAKE_C_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

set(TARNEX_SANITIZERS "" CACHE STRING "Sanitizers to build with, for example address,undefined or thread")

add_library(tarnex_settings INTERFACE)
target_include_directories(tarnex_settings INTERFACE ${PROJECT_SOURCE_DIR})
if(MSVC)
  # /EHs without c: exceptions may leave the exported functions, which are extern "C".
  target_compile_options(tarnex_settings INTERFACE /W4 /permissive- /utf-8 $<$<COMPILE_LANGUAGE:CXX>:/EHs;/EHc->)
  # No compiler's DLL is needed beside ours.
  set(CMAKE_MSVC_RUNTIME_LIBRARY "MultiThreaded$<$<CONFIG:Debug>:Debug>")
else()
  target_compile_options(tarnex_settings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 wrongly reports overlapping copies in "text" + std::string (GCC bug 105651).
  target_compile_options(tarnex_settings INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-Wno-restrict>)
endif()
if(MINGW)
  # No compiler's DLL is needed beside a program or DLL of ours.
  target_link_options(tarnex_settings INTERFACE -static)
endif()
if(TARNEX_WARNINGS_AS_ERRORS)
  target_compile_options(tarnex_settings INTERFACE $<IF:$<BOOL:${MSVC}>,/WX,-Werror>)
endif()
if(TARNEX_SANITIZERS)
  target_compile_options(tarnex_settings INTERFACE
                         -fsanitize=${TARNEX_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(tarnex_settings INTERFACE -fsanitize=${TARNEX_SANITIZERS})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # False positives in instrumented code (std::regex for example); the other builds keep the warning.
    target_compile_options(tarnex_settings INTERFACE -Wno-maybe-uninitialized)
  endif()
endif()

# Declares a layer: a static library that a test can link alone, with hidden symbols.
function(tarnex_add_layer name)
  add_library(${name} STATIC ${ARGN})
  # For our own sources and tests only: users of the installed library choose their own warnings.
  target_link_libraries(${name} PUBLIC $<BUILD_INTERFACE:tarnex_settings>)
  set_target_properties(${name} PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
endfunction()
