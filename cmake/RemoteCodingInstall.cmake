# What `cmake --install` puts in place:
#
#   lib/libRemoteCoding.so*               the component
#   include/RemoteCoding/                 the public headers, under their repository-relative paths
#   lib/libReferenceHost.a, ...           the reference host, for a host's own tests,
#   include/RemoteCodingReferenceHost/    with its headers and those of Base that are not public
#   lib/cmake/RemoteCoding/               the package: RemoteCoding::RemoteCoding, RemoteCoding::ReferenceHost

include(CMakePackageConfigHelpers)
set(public_root "${CMAKE_INSTALL_INCLUDEDIR}/RemoteCoding")
set(kit_root "${CMAKE_INSTALL_INCLUDEDIR}/RemoteCodingReferenceHost")
set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/RemoteCoding")

target_include_directories(RemoteCoding INTERFACE "$<INSTALL_INTERFACE:${public_root}>")
target_include_directories(RemoteCodingBase INTERFACE "$<INSTALL_INTERFACE:${public_root}>"
                                                      "$<INSTALL_INTERFACE:${kit_root}>")
set_target_properties(RemoteCodingBase PROPERTIES EXPORT_NAME ReferenceHostBase)
install(
    TARGETS RemoteCoding ReferenceHost RemoteCodingBase
    EXPORT RemoteCodingTargets
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}")

get_property(base_headers GLOBAL PROPERTY REMOTE_CODING_BASE_PUBLIC_HEADERS)
foreach(header IN LISTS base_headers)
    cmake_path(GET header PARENT_PATH folder)
    install(FILES "${PROJECT_SOURCE_DIR}/${header}" DESTINATION "${public_root}/${folder}")
endforeach()
install(
    DIRECTORY "${PROJECT_SOURCE_DIR}/Components/RemoteCoding/HostInterfaces"
    DESTINATION "${public_root}/Components/RemoteCoding"
    FILES_MATCHING
    PATTERN "*.hpp")
install(FILES "${PROJECT_SOURCE_DIR}/Components/RemoteCoding/Component/RemoteCodingComponent.hpp"
        DESTINATION "${public_root}/Components/RemoteCoding/Component")

file(GLOB_RECURSE kit_headers RELATIVE "${PROJECT_SOURCE_DIR}" CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/Base/*.hpp"
     "${PROJECT_SOURCE_DIR}/ReferenceHost/*.hpp")
list(REMOVE_ITEM kit_headers ${base_headers})
install(DIRECTORY DESTINATION "${kit_root}")
foreach(header IN LISTS kit_headers)
    cmake_path(GET header PARENT_PATH folder)
    install(FILES "${PROJECT_SOURCE_DIR}/${header}" DESTINATION "${kit_root}/${folder}")
endforeach()

install(EXPORT RemoteCodingTargets NAMESPACE RemoteCoding:: DESTINATION "${package_dir}")
configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/RemoteCodingConfig.cmake.in"
                              "${PROJECT_BINARY_DIR}/RemoteCodingConfig.cmake" INSTALL_DESTINATION "${package_dir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/RemoteCodingConfigVersion.cmake"
                                 COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/RemoteCodingConfig.cmake" "${PROJECT_BINARY_DIR}/RemoteCodingConfigVersion.cmake"
        DESTINATION "${package_dir}")
