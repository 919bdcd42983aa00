# Debian packages, which cpack -G DEB makes in the build folder: libvellum1, libvellum-dev and vellum-tools.
set(VELLUM_MAINTAINER "Vellum developers <developers@vellum.invalid>" CACHE STRING "Who answers for the packages")

set(CPACK_PACKAGE_VENDOR "Vellum developers")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package has its own
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGING_INSTALL_PREFIX "${CMAKE_INSTALL_PREFIX}")

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${VELLUM_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}/Sources/Core") # the library of vellum-tools is not installed
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON) # of exactly this version

# vellum_package(COMPONENT NAME SECTION SUMMARY DETAILS): the Debian package NAME has the files of the component. A
# macro, since CPack reads variables.
macro(vellum_package component name section summary details)
    string(TOUPPER ${component} upper)
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name})
    set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section})
    set(CPACK_DEBIAN_${upper}_DESCRIPTION "${summary}\n${details}")
    install(FILES "${PROJECT_SOURCE_DIR}/CMake/Debian/copyright"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${name}" COMPONENT ${component})
    install(FILES "${PROJECT_BINARY_DIR}/Package/changelog.Debian.gz"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${name}" COMPONENT ${component})
endmacro()

# The changelog of the package is that of the project, of which this much has a form of its own.
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
file(WRITE "${PROJECT_BINARY_DIR}/Package/changelog.Debian"
    "vellum (${PROJECT_VERSION}-1) unstable; urgency=medium\n\n"
    "  * Version ${PROJECT_VERSION}; /usr/share/doc/libvellum-dev/CHANGELOG.md tells what is new.\n\n"
    " -- ${VELLUM_MAINTAINER}  ${date}\n")
find_program(VELLUM_GZIP gzip REQUIRED)
execute_process(COMMAND "${VELLUM_GZIP}" -9nf "${PROJECT_BINARY_DIR}/Package/changelog.Debian" COMMAND_ERROR_IS_FATAL ANY)

vellum_package(Runtime libvellum${PROJECT_VERSION_MAJOR} libs "object serialization in binary, JSON and XML documents"
    "Vellum stores objects of C++ programs: one description of a class, and its\nobjects become compact binary documents, JSON or XML, and come back from each.\n.\nThis package has the shared library.")
vellum_package(Development libvellum-dev libdevel "object serialization in binary, JSON and XML, for development"
    "Vellum stores objects of C++ programs: one description of a class, and its\nobjects become compact binary documents, JSON or XML, and come back from each.\n.\nThis package has what programs are built with: headers, the packages for CMake\nand pkg-config, and the documentation.")
vellum_package(Tools vellum-tools utils "looks into binary, JSON and XML documents of Vellum"
    "The program vellum shows what is in documents that the Vellum library has\nstored, without knowing the classes they were written from, and finds the place\nwhere one is damaged.")

# Who is linked with the library depends on its package from this version on, and the loader is told of it.
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA "${CMAKE_CURRENT_LIST_DIR}/Debian/triggers")

set(CPACK_COMPONENTS_ALL Runtime Development Documentation Tools)
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
foreach(component IN ITEMS RUNTIME DEVELOPMENT TOOLS)
    set(CPACK_COMPONENT_${component}_GROUP ${component})
endforeach()
set(CPACK_COMPONENT_DOCUMENTATION_GROUP DEVELOPMENT)
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS Runtime)
set(CPACK_COMPONENT_TOOLS_DEPENDS Runtime)

include(CPack)
