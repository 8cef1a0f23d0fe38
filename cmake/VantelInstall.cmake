# The libraries as an SDK: headers, static archives, a CMake package
# (find_package(Vantel) gives Vantel::Graphics2, Vantel::OverlayGenerator,
# ...) and a pkg-config file. Platform and the vantel_gif shim are installed
# too because the static archives need them at link time.
#
# The SDK is the component `sdk`, left out of a plain `cmake --install`
# (EXCLUDE_FROM_ALL): people who want the programs do not want 60 MB of
# archives and headers. `cmake --install build --component sdk` adds it.
include(CMakePackageConfigHelpers)

set(VANTEL_SDK_MODULES Platform ZBExtensions Graphics2 CoreGraphicsRendering OverlayGenerator FramingDecisions VantelPreview)
set(VANTEL_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Vantel)

foreach(module ${VANTEL_SDK_MODULES})
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/${module}/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
          COMPONENT sdk EXCLUDE_FROM_ALL)
endforeach()
install(TARGETS ${VANTEL_SDK_MODULES} vantel_gif EXPORT VantelTargets
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT sdk EXCLUDE_FROM_ALL)
# Debug information is most of the archives' size; a stripped install
# (--strip, as make deb does) drops it, as Debian's own -dev packages do.
install(CODE "
  if(CMAKE_INSTALL_DO_STRIP)
    foreach(module ${VANTEL_SDK_MODULES})
      execute_process(COMMAND \"${CMAKE_STRIP}\" --strip-debug --enable-deterministic-archives
        \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}/lib\${module}.a\")
    endforeach()
  endif()" COMPONENT sdk EXCLUDE_FROM_ALL)
install(EXPORT VantelTargets NAMESPACE Vantel:: DESTINATION ${VANTEL_CMAKE_DIR} COMPONENT sdk EXCLUDE_FROM_ALL)

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/VantelConfig.cmake.in
  ${PROJECT_BINARY_DIR}/VantelConfig.cmake INSTALL_DESTINATION ${VANTEL_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/VantelConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/VantelConfig.cmake ${PROJECT_BINARY_DIR}/VantelConfigVersion.cmake
        DESTINATION ${VANTEL_CMAKE_DIR} COMPONENT sdk EXCLUDE_FROM_ALL)

# The .pc file finds the prefix from its own place, so that
# `cmake --install --prefix` anywhere gives a working file.
file(RELATIVE_PATH VANTEL_PC_TO_PREFIX /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
set(VANTEL_PC_RUNTIME "")
if(VANTEL_SANITIZERS)
  set(VANTEL_PC_RUNTIME " -fsanitize=${VANTEL_SANITIZERS}")  # as for CMake consumers
endif()
configure_file(${PROJECT_SOURCE_DIR}/cmake/vantel.pc.in ${PROJECT_BINARY_DIR}/vantel.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/vantel.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
        COMPONENT sdk EXCLUDE_FROM_ALL)
