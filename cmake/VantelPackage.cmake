# make deb: two Debian packages from the install rules, through CPack.
#   vantel      every component but the SDK: the programs, the thumbnailer
#               entry, the MIME type, the desktop files, the manual pages and
#               the completions. A program or plugin added later is in it as
#               soon as it has an install rule (any component not named sdk*).
#   vantel-dev  the components named sdk*: static libraries, headers, the
#               CMake package and vantel.pc.
# Depends of vantel comes from dpkg-shlibdeps; vantel-dev needs the
# development packages of what the archives link against.
#
# No maintainer scripts: in Debian 12, shared-mime-info, desktop-file-utils
# and man-db declare file triggers on /usr/share/mime/packages,
# /usr/share/applications and /usr/share/man, so dpkg refreshes their
# databases whenever a package puts files there or takes them away.
set(VANTEL_PACKAGE_MAINTAINER "Vantel maintainers <maintainers@vantel.example>"
    CACHE STRING "Maintainer field of the Debian packages")

# Debian wants a copyright file and a changelog in each package's
# /usr/share/doc/<package>. They are components of their own, left out of
# `cmake --install` and `make install-user`.
string(TIMESTAMP vantel_package_date "%a, %d %b %Y %H:%M:%S +0000" UTC)
foreach(package vantel vantel-dev)
  set(doc_dir ${PROJECT_BINARY_DIR}/package-doc/${package})
  file(WRITE ${doc_dir}/changelog
    "${package} (${PROJECT_VERSION}) unstable; urgency=medium\n\n"
    "  * Built from the Vantel sources by make deb.\n\n"
    " -- ${VANTEL_PACKAGE_MAINTAINER}  ${vantel_package_date}\n")
  execute_process(COMMAND gzip -9nf ${doc_dir}/changelog)
  set(component package-doc)
  if(package STREQUAL vantel-dev)
    set(component sdk-doc)
  endif()
  install(FILES ${PROJECT_SOURCE_DIR}/data/package/copyright ${doc_dir}/changelog.gz
          DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package} COMPONENT ${component} EXCLUDE_FROM_ALL)
endforeach()
install(FILES ${PROJECT_SOURCE_DIR}/data/package/vantel.lintian-overrides
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/lintian/overrides RENAME vantel
        COMPONENT package-doc EXCLUDE_FROM_ALL)

get_cmake_property(vantel_components COMPONENTS)
foreach(component IN LISTS vantel_components)
  string(TOUPPER ${component} upper)
  if(component MATCHES "^sdk")
    set(CPACK_COMPONENT_${upper}_GROUP dev)
  else()
    set(CPACK_COMPONENT_${upper}_GROUP runtime)
  endif()
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vantel)
set(CPACK_PACKAGE_VENDOR "the Vantel developers")
set(CPACK_PACKAGE_CONTACT ${VANTEL_PACKAGE_MAINTAINER})
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME vantel)
set(CPACK_DEBIAN_RUNTIME_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "previews and renders overlay documents and ASC FDL files
Overlay documents (*.aspectratio) describe a canvas, a background colour
and nested aspect-ratio guides with grids. The vantel command renders them
and ASC framing decision lists (*.fdl) to PNG, PDF, SVG and other images,
describes and checks them, and writes new ones. A thumbnailer entry gives
file browsers pictures of both, and vantel-preview shows one in a window
that follows the file as it is saved.")

set(CPACK_DEBIAN_DEV_PACKAGE_NAME vantel-dev)
set(CPACK_DEBIAN_DEV_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS
  "libplist-dev, libcairo2-dev, libicu-dev, libxml2-dev, libssl-dev, libdeflate-dev, libtiff-dev, libjpeg62-turbo-dev | libjpeg-dev, libopenjp2-7-dev, zlib1g-dev, libgif-dev, nlohmann-json3-dev")
set(CPACK_DEBIAN_DEV_DESCRIPTION "Vantel's libraries for programs of your own
Static libraries and headers of Vantel's libraries: vector graphics with
SVG output and Perlin noise, drawing with cairo into images, overlay
documents and their guide layout, ASC framing decision lists. Programs find
them with find_package(Vantel) in CMake or pkg-config --cflags --libs vantel.")

include(CPack)
