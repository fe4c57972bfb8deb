# Read by CPack once for each generator: which of the two layouts it packs.
if(CPACK_GENERATOR STREQUAL "DEB")
    set(CPACK_COMPONENTS_ALL program)
else()
    set(CPACK_COMPONENTS_ALL portable)
    set(CPACK_PACKAGING_INSTALL_PREFIX /)
    set(CPACK_PACKAGE_FILE_NAME tarvello-${CPACK_PACKAGE_VERSION}-linux-${CPACK_SYSTEM_PROCESSOR})
endif()
