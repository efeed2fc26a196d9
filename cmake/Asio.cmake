# Asio without Boost: target tarnex_asio.
include_guard(GLOBAL)

find_package(Threads REQUIRED)
find_path(TARNEX_ASIO_INCLUDE_DIR asio.hpp REQUIRED)

# GCC warns that the thread sanitizer ignores Asio's fences. Locks order its handlers, and the sanitizer sees locks.
add_library(tarnex_asio INTERFACE)
target_include_directories(tarnex_asio SYSTEM INTERFACE ${TARNEX_ASIO_INCLUDE_DIR})
target_compile_definitions(tarnex_asio INTERFACE ASIO_STANDALONE ASIO_NO_DEPRECATED)
target_compile_options(tarnex_asio INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-tsan>)
target_link_libraries(tarnex_asio INTERFACE Threads::Threads)
