# CMake toolchain file of the preset "windows": cross-compiles the Windows program on Linux with the
# compiler and the static Qt that tools/windows/toolchain gets ready.
#
# VARNEL_WINDOWS_QT, a cache or environment variable, names another folder with such a Qt.
if(NOT VARNEL_WINDOWS_QT)
    set(cache "$ENV{XDG_CACHE_HOME}")
    if(cache STREQUAL "")
        set(cache "$ENV{HOME}/.cache")
    endif()
    set(VARNEL_WINDOWS_QT "${cache}/varnel-setup/windows-qt")
    if(NOT "$ENV{VARNEL_WINDOWS_QT}" STREQUAL "")
        set(VARNEL_WINDOWS_QT "$ENV{VARNEL_WINDOWS_QT}")
    endif()
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES VARNEL_WINDOWS_QT)
if(NOT EXISTS "${VARNEL_WINDOWS_QT}/lib/cmake/Qt6/Qt6Config.cmake")
    message(FATAL_ERROR
        "There is no Qt for Windows in ${VARNEL_WINDOWS_QT}. Run tools/windows/toolchain first.")
endif()

include(${CMAKE_CURRENT_LIST_DIR}/../tools/windows/qt/mingw.cmake)
set(CMAKE_PREFIX_PATH ${VARNEL_WINDOWS_QT})

# One file without companions: the run-time libraries of the compiler go into it as well. What is left
# over when everything nobody calls is gone has no symbols either. No link-time optimisation: the
# compiler of Debian 12 (GCC 12) ends in an internal error over it.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -Wl,--gc-sections")
set(CMAKE_EXE_LINKER_FLAGS_MINSIZEREL_INIT "-s")

# Qt's tools for the build come from the machine's own Qt.
set(QT_HOST_PATH /usr)
file(GLOB QT_HOST_PATH_CMAKE_DIR /usr/lib/*/cmake/Qt6HostInfo)
cmake_path(GET QT_HOST_PATH_CMAKE_DIR PARENT_PATH QT_HOST_PATH_CMAKE_DIR)

# Programs that the build made are run by Wine.
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../tools/windows/run-test)
