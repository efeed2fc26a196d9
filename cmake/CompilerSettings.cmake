# How every target of this project is compiled, and the two functions that the rooms declare their targets with.

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
  # Nothing of the compiler's own beside the DLL.
  set(CMAKE_MSVC_RUNTIME_LIBRARY "MultiThreaded$<$<CONFIG:Debug>:Debug>")
else()
  target_compile_options(tarnex_settings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 sees overlapping copies in its own library's "text" + std::string (GCC bug 105651).
  target_compile_options(tarnex_settings INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-Wno-restrict>)
endif()
if(MINGW)
  # Nothing of the compiler's own beside a program or DLL.
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
    # The instrumentation hides initializations from this warning (in std::regex, for one); the other builds keep it.
    target_compile_options(tarnex_settings INTERFACE -Wno-maybe-uninitialized)
  endif()
endif()

# A floor of the driver: a static library that a test can link alone. Its symbols stay hidden in what links it.
function(tarnex_add_layer name)
  add_library(${name} STATIC ${ARGN})
  # For our own sources and tests; who links to the installed library chooses its own warnings.
  target_link_libraries(${name} PUBLIC $<BUILD_INTERFACE:tarnex_settings>)
  set_target_properties(${name} PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
endfunction()
