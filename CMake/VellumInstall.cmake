# The library as a package: the target Vellum::Vellum for find_package, vellum.pc for pkg-config, and the headers that
# <Vellum/Vellum.h> reaches. The headers have a folder of their own, since names such as Platform/ are too plain to
# stand among those of others.
#
# Components: Runtime is what a program needs that is linked with the shared library; Development what it is built with;
# Tools the program `vellum`; Documentation the pages.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(headerFolder "${CMAKE_INSTALL_INCLUDEDIR}/vellum-${PROJECT_VERSION_MAJOR}")
set(packageFolder "${CMAKE_INSTALL_LIBDIR}/cmake/Vellum")
set(generated "${PROJECT_BINARY_DIR}/Package")

# Who links the static library links what it stands on as well. The shared one asks for nothing.
set(requiredModules "")
set(requiredLibraries "")
set(definitions "")
if(NOT BUILD_SHARED_LIBS)
    set(definitions "-DVELLUM_STATIC")
    get_target_property(required Vellum LINK_LIBRARIES)
    foreach(library IN LISTS required)
        if(library MATCHES "^PkgConfig::(.+)$")
            list(APPEND requiredModules "${CMAKE_MATCH_1}")
        elseif(library AND NOT library MATCHES "^::@") # ::@ only names the folder that adds the library
            list(APPEND requiredLibraries "-l${library}")
        endif()
    endforeach()
endif()

# For CMake
install(TARGETS Vellum EXPORT VellumTargets
    RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT Runtime
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT Runtime NAMELINK_COMPONENT Development
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT Development
    FILE_SET HEADERS DESTINATION "${headerFolder}" COMPONENT Development
    INCLUDES DESTINATION "${headerFolder}")
install(EXPORT VellumTargets NAMESPACE Vellum:: DESTINATION "${packageFolder}" COMPONENT Development)

list(JOIN requiredModules " " requiredModules)
configure_file("${CMAKE_CURRENT_LIST_DIR}/VellumConfig.cmake.in" "${generated}/VellumConfig.cmake" @ONLY)
write_basic_package_version_file("${generated}/VellumConfigVersion.cmake" COMPATIBILITY SameMajorVersion)
install(FILES
    "${generated}/VellumConfig.cmake"
    "${generated}/VellumConfigVersion.cmake"
    "${CMAKE_CURRENT_LIST_DIR}/VellumAddResource.cmake"
    DESTINATION "${packageFolder}" COMPONENT Development)

# For pkg-config. Seen from a relative library folder the prefix is some levels up, wherever the tree is moved to.
# Absolute folders are where they are.
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
    set(prefix "${CMAKE_INSTALL_PREFIX}")
    set(libraryFolder "${CMAKE_INSTALL_LIBDIR}")
else()
    file(RELATIVE_PATH up "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
    string(REGEX REPLACE "/$" "" prefix "\${pcfiledir}/${up}")
    set(libraryFolder "\${prefix}/${CMAKE_INSTALL_LIBDIR}")
endif()
if(NOT IS_ABSOLUTE "${headerFolder}")
    string(PREPEND headerFolder "\${prefix}/")
endif()
foreach(folder IN ITEMS prefix libraryFolder headerFolder)
    string(REPLACE " " "\\ " ${folder} "${${folder}}")
endforeach()
list(JOIN requiredLibraries " " requiredLibraries)
configure_file("${CMAKE_CURRENT_LIST_DIR}/vellum.pc.in" "${generated}/vellum.pc" @ONLY)
install(FILES "${generated}/vellum.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT Development)

# For people
install(FILES "${PROJECT_SOURCE_DIR}/README.md" "${PROJECT_SOURCE_DIR}/CHANGELOG.md"
    DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT Documentation)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/Docs" DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT Documentation
    FILES_MATCHING PATTERN "*.md" PATTERN "*.svg")
