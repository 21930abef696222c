include_guard(GLOBAL)
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(ZENTU_CMAKE_INSTALL_DIR "${CMAKE_INSTALL_LIBDIR}/cmake/ZentuCmdEngine")
set(ZENTU_HEADER_INSTALL_DIR "${CMAKE_INSTALL_INCLUDEDIR}/ZentuCmdEngine")

install(TARGETS ZentuUtilities ZentuCmdEngine ZentuJobDocument
    EXPORT ZentuCmdEngineTargets
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}"
    FILE_SET HEADERS DESTINATION "${ZENTU_HEADER_INSTALL_DIR}"
    INCLUDES DESTINATION "${ZENTU_HEADER_INSTALL_DIR}")

install(EXPORT ZentuCmdEngineTargets
    NAMESPACE ZentuCmdEngine::
    DESTINATION "${ZENTU_CMAKE_INSTALL_DIR}")

# The build tree is a package too: a consumer that sets ZentuCmdEngine_DIR to the build folder
# uses the libraries where they were built, without installing them.
export(EXPORT ZentuCmdEngineTargets
    NAMESPACE ZentuCmdEngine::
    FILE "${PROJECT_BINARY_DIR}/ZentuCmdEngineTargets.cmake")

configure_package_config_file(
    "${PROJECT_SOURCE_DIR}/cmake/ZentuCmdEngineConfig.cmake.in"
    "${PROJECT_BINARY_DIR}/ZentuCmdEngineConfig.cmake"
    INSTALL_DESTINATION "${ZENTU_CMAKE_INSTALL_DIR}")
# Before 1.0 a minor release may break the interface, so only the same minor version matches.
write_basic_package_version_file(
    "${PROJECT_BINARY_DIR}/ZentuCmdEngineConfigVersion.cmake"
    COMPATIBILITY SameMinorVersion)
install(FILES
    "${PROJECT_BINARY_DIR}/ZentuCmdEngineConfig.cmake"
    "${PROJECT_BINARY_DIR}/ZentuCmdEngineConfigVersion.cmake"
    DESTINATION "${ZENTU_CMAKE_INSTALL_DIR}")

# The .pc file finds the prefix from its own location, so an installed tree can be moved.
file(RELATIVE_PATH ZENTU_PC_PREFIX_FROM_PCFILEDIR
    "/prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/prefix")
configure_file("${PROJECT_SOURCE_DIR}/cmake/ZentuCmdEngine.pc.in"
    "${PROJECT_BINARY_DIR}/ZentuCmdEngine.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/ZentuCmdEngine.pc"
    DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
