# TARNEX::tarnex_visa: the VISA library of the system under its common name (VPP-4.3.5). Installed too, for programs
# that link to the static layers.
if(NOT TARGET TARNEX::tarnex_visa)
  find_library(TARNEX_SYSTEM_VISA NAMES libivivisa.so.0)
  if(NOT TARNEX_SYSTEM_VISA)
    message(FATAL_ERROR "libivivisa.so.0 was not found. Install your vendor's VISA, name its "
                        "folder with -DCMAKE_LIBRARY_PATH=..., or use the driver's own with -DTARNEX_VISA=builtin.")
  endif()
  add_library(TARNEX::tarnex_visa SHARED IMPORTED GLOBAL)
  set_target_properties(TARNEX::tarnex_visa PROPERTIES
    IMPORTED_LOCATION ${TARNEX_SYSTEM_VISA} IMPORTED_SONAME libivivisa.so.0)
endif()
