# Builds the Svg library of Qt 5.15's sources as the module Svg of Qt 6: the same CMake package, the
# same target and the same header names as Qt's own, so that nobody who uses it can tell. Becomes the
# CMakeLists.txt of those sources.
cmake_minimum_required(VERSION 3.21)
project(QtSvg LANGUAGES CXX)
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

find_package(Qt6 REQUIRED COMPONENTS Core Gui)

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_AUTOMOC ON)
set(sources ${CMAKE_CURRENT_SOURCE_DIR}/src/svg)
set(public_headers qsvggenerator.h qsvgrenderer.h qtsvgglobal.h)

# What Qt's syncqt would make: the headers under the names of their classes.
set(headers ${CMAKE_CURRENT_BINARY_DIR}/include/QtSvg)
foreach(header IN LISTS public_headers)
    configure_file(${sources}/${header} ${headers}/${header} COPYONLY)
endforeach()
file(WRITE ${headers}/QSvgGenerator "#include \"qsvggenerator.h\"\n")
file(WRITE ${headers}/QSvgRenderer "#include \"qsvgrenderer.h\"\n")
file(WRITE ${headers}/QtSvg
    "#include <QtGui/QtGui>\n#include \"qsvggenerator.h\"\n#include \"qsvgrenderer.h\"\n")

add_library(Svg STATIC
    ${sources}/qsvgfont.cpp
    ${sources}/qsvggenerator.cpp
    ${sources}/qsvggraphics.cpp
    ${sources}/qsvghandler.cpp
    ${sources}/qsvgnode.cpp
    ${sources}/qsvgrenderer.cpp
    ${sources}/qsvgstructure.cpp
    ${sources}/qsvgstyle.cpp
    ${sources}/qsvgtinydocument.cpp
)
set_target_properties(Svg PROPERTIES OUTPUT_NAME Qt6Svg)
# Compressed drawings need zlib, which Qt hides inside its Core library.
target_compile_definitions(Svg
    PUBLIC QT_SVG_LIB
    PRIVATE QT_NO_COMPRESS QT_NO_USING_NAMESPACE)
target_compile_options(Svg PRIVATE -Wno-deprecated-declarations)
target_include_directories(Svg
    PRIVATE ${sources}
    PUBLIC
        $<BUILD_INTERFACE:${headers}/..>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/QtSvg>)
target_link_libraries(Svg PUBLIC Qt6::Core Qt6::Gui PRIVATE Qt6::CorePrivate Qt6::GuiPrivate)

set(package ${CMAKE_INSTALL_LIBDIR}/cmake/Qt6Svg)
install(TARGETS Svg EXPORT Svg ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY ${headers} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT Svg NAMESPACE Qt6:: FILE Qt6SvgTargets.cmake DESTINATION ${package})

file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/Qt6SvgConfig.cmake [[
include(CMakeFindDependencyMacro)
find_dependency(Qt6Core)
find_dependency(Qt6Gui)
include(${CMAKE_CURRENT_LIST_DIR}/Qt6SvgTargets.cmake)
if(NOT TARGET Qt::Svg)
    add_library(Qt::Svg ALIAS Qt6::Svg)
endif()
]])
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/Qt6SvgConfigVersion.cmake
    VERSION ${Qt6_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES
    ${CMAKE_CURRENT_BINARY_DIR}/Qt6SvgConfig.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/Qt6SvgConfigVersion.cmake
    DESTINATION ${package})
