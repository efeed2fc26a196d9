# The installed files, and the package of find_package(TARNEX):
#   TARNEX::TARNEX      the driver's shared library with its header
#   TARNEX::supply      the supply library with its header, and the driver
#   TARNEX::instrument  the command layer, a static library for C++ programs
# The built-in platform runtime is installed into a folder of its own, where the driver finds it by its run path. Other
# programs do not find it, so it never shadows a vendor's libraries.

if(WIN32 OR NOT TARNEX_PLATFORM_RUNTIME)
  return()
endif()
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/TARNEX)
set(runtime_folder ${CMAKE_INSTALL_LIBDIR}/tarnex)
set(layer_includes ${CMAKE_INSTALL_INCLUDEDIR}/tarnex)

set_target_properties(TARNEX PROPERTIES INSTALL_RPATH "$ORIGIN/tarnex")
set_target_properties(TARNEX_supply PROPERTIES INSTALL_RPATH "$ORIGIN;$ORIGIN/tarnex" EXPORT_NAME supply)
set_target_properties(tarnex_instrument PROPERTIES EXPORT_NAME instrument)
set_target_properties(tarnex_headers PROPERTIES EXPORT_NAME headers)

# The headers need C++20, even in a program that does not request it.
target_compile_features(tarnex_instrument INTERFACE cxx_std_20)
target_link_libraries(tarnex_visa_io INTERFACE $<INSTALL_INTERFACE:TARNEX::tarnex_visa>)
foreach(layer text status visa_io instrument)
  target_include_directories(tarnex_${layer} INTERFACE $<INSTALL_INTERFACE:${layer_includes}>)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/${layer} DESTINATION ${layer_includes} FILES_MATCHING PATTERN "*.h")
endforeach()
install(FILES ${PROJECT_SOURCE_DIR}/platform/vi_types.h ${PROJECT_SOURCE_DIR}/platform/visa.h
              ${PROJECT_SOURCE_DIR}/platform/session_service.h
        DESTINATION ${layer_includes}/platform)
install(FILES ${PROJECT_SOURCE_DIR}/include/TARNEX.h ${PROJECT_SOURCE_DIR}/include/TARNEX_supply.h
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

# The folder of Debian's Python when the prefix is /usr. The package finds the libraries relative to it.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/python/tarnex DESTINATION lib/python3/dist-packages
        FILES_MATCHING PATTERN "*.py" PATTERN "py.typed" PATTERN "__pycache__" EXCLUDE PATTERN "_lib" EXCLUDE)

install(TARGETS TARNEX TARNEX_supply tarnex_headers tarnex_text tarnex_status tarnex_visa_io tarnex_instrument
        EXPORT TARNEXTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
set(runtime tarnex_session_service tarnex_config_server)
if(TARNEX_VISA STREQUAL "builtin")
  list(APPEND runtime tarnex_visa)
else()
  install(FILES ${PROJECT_SOURCE_DIR}/cmake/SystemVisa.cmake DESTINATION ${package_folder})
endif()
install(TARGETS ${runtime} EXPORT TARNEXTargets LIBRARY DESTINATION ${runtime_folder})
install(EXPORT TARNEXTargets NAMESPACE TARNEX:: DESTINATION ${package_folder})

write_basic_package_version_file(${PROJECT_BINARY_DIR}/TARNEXConfigVersion.cmake COMPATIBILITY SameMajorVersion)
file(WRITE ${PROJECT_BINARY_DIR}/TARNEXConfig.cmake
     "include(\${CMAKE_CURRENT_LIST_DIR}/SystemVisa.cmake OPTIONAL)\n"
     "include(\${CMAKE_CURRENT_LIST_DIR}/TARNEXTargets.cmake)\n")
install(FILES ${PROJECT_BINARY_DIR}/TARNEXConfig.cmake ${PROJECT_BINARY_DIR}/TARNEXConfigVersion.cmake
        DESTINATION ${package_folder})
