# The packages of `make package`. The Windows zip has the layout of the IVI root, without function panel files.

if(NOT PROJECT_IS_TOP_LEVEL OR MSVC)
  return()
endif()

# Documents and examples are laid out as in the repository, so that the links between them work.
function(tarnex_install_documents folder)
  install(FILES ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/CHANGELOG.md ${PROJECT_SOURCE_DIR}/LICENSE
          DESTINATION ${folder})
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs DESTINATION ${folder} FILES_MATCHING PATTERN "*.md" PATTERN "*.svg")
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples DESTINATION ${folder}
          FILES_MATCHING PATTERN "*.c" PATTERN "*.cpp" PATTERN "*.h" PATTERN "*.xml")
endfunction()

if(WIN32)
  install(TARGETS TARNEX TARNEX_supply RUNTIME DESTINATION Bin ARCHIVE DESTINATION Lib_x64/gnu)
  install(FILES ${TARNEX_MSVC_IMPORT_LIBRARY} ${TARNEX_SUPPLY_MSVC_IMPORT_LIBRARY} DESTINATION Lib_x64/msc)
  install(FILES ${PROJECT_SOURCE_DIR}/include/TARNEX.h ${PROJECT_SOURCE_DIR}/include/TARNEX_supply.h
          DESTINATION Include)
  tarnex_install_documents(Drivers/TARNEX)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/python/tarnex DESTINATION Drivers/TARNEX/python
          FILES_MATCHING PATTERN "*.py" PATTERN "py.typed" PATTERN "__pycache__" EXCLUDE PATTERN "_lib" EXCLUDE)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_SYSTEM_NAME windows-x64)
else()
  include(GNUInstallDirs)
  tarnex_install_documents(${CMAKE_INSTALL_DATADIR}/doc/tarnex)

  # The package may be unpacked anywhere, so paths are relative to the file.
  set(pkgconfig_folder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
  file(RELATIVE_PATH prefix_from_here /${pkgconfig_folder} /)
  string(REGEX REPLACE "/$" "" prefix_from_here "${prefix_from_here}")
  foreach(file tarnex.pc tarnex-supply.pc)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/${file}.in ${PROJECT_BINARY_DIR}/${file} @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${file} DESTINATION ${pkgconfig_folder})
  endforeach()

  set(CPACK_GENERATOR TGZ DEB)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_SECTION libs)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/runtime)
  string(TOLOWER "linux-${CMAKE_SYSTEM_PROCESSOR}" CPACK_SYSTEM_NAME)
endif()

set(CPACK_PACKAGE_NAME tarnex)
set(CPACK_PACKAGE_VENDOR "Keltor Technology")
set(CPACK_PACKAGE_CONTACT "Keltor Technology")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_INCLUDE_TOPLEVEL_DIRECTORY OFF)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_SOURCE_DIR}/build/packages)
include(CPack)
