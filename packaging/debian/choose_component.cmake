# Runs inside cpack, once for each generator: a .deb has one component, the others have all.
if(CPACK_GENERATOR STREQUAL "DEB")
    if(NOT DEFINED packed_component)
        set(packed_component Unspecified) # what the install rules name none for
    endif()
    list(GET CPACK_INSTALL_CMAKE_PROJECTS 0 build_folder)
    set(CPACK_INSTALL_CMAKE_PROJECTS "${build_folder};${CPACK_PACKAGE_NAME};${packed_component};/")
endif()
