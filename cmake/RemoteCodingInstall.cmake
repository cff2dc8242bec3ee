# What `cmake --install` puts in place: the shared library, the public headers and the CMake package. Headers keep their
# repository-relative paths below include/RemoteCoding, the include directory of the imported target.

include(CMakePackageConfigHelpers)
set(header_root "${CMAKE_INSTALL_INCLUDEDIR}/RemoteCoding")
set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/RemoteCoding")

target_include_directories(RemoteCoding PUBLIC "$<INSTALL_INTERFACE:${header_root}>")
install(
    TARGETS RemoteCoding
    EXPORT RemoteCodingTargets
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}")

get_property(base_headers GLOBAL PROPERTY REMOTE_CODING_BASE_PUBLIC_HEADERS)
foreach(header IN LISTS base_headers)
    cmake_path(GET header PARENT_PATH folder)
    install(FILES "${PROJECT_SOURCE_DIR}/${header}" DESTINATION "${header_root}/${folder}")
endforeach()
install(
    DIRECTORY "${PROJECT_SOURCE_DIR}/Components/RemoteCoding/HostInterfaces"
    DESTINATION "${header_root}/Components/RemoteCoding"
    FILES_MATCHING
    PATTERN "*.hpp")
install(FILES "${PROJECT_SOURCE_DIR}/Components/RemoteCoding/Component/RemoteCodingComponent.hpp"
        DESTINATION "${header_root}/Components/RemoteCoding/Component")

install(EXPORT RemoteCodingTargets NAMESPACE RemoteCoding:: DESTINATION "${package_dir}")
configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/RemoteCodingConfig.cmake.in"
                              "${PROJECT_BINARY_DIR}/RemoteCodingConfig.cmake" INSTALL_DESTINATION "${package_dir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/RemoteCodingConfigVersion.cmake"
                                 COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/RemoteCodingConfig.cmake" "${PROJECT_BINARY_DIR}/RemoteCodingConfigVersion.cmake"
        DESTINATION "${package_dir}")
