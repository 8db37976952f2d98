# The compiler of the Windows program, for Qt and for the project alike. Part of the recipe whose hash
# names the built Qt, so nothing stands here that Qt need not be rebuilt for.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

# The variants with POSIX threads: std::thread and friends exist only there.
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# Each function and each object in a section of its own, so that the linker can drop what nobody uses.
set(CMAKE_C_FLAGS_INIT "-ffunction-sections -fdata-sections")
set(CMAKE_CXX_FLAGS_INIT "-ffunction-sections -fdata-sections")

# VARNEL_WINDOWS_QT: where the built Qt is, once it is.
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32 ${VARNEL_WINDOWS_QT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
