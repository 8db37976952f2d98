# The same sources give the same bytes, on every day and in every folder, so that anybody can build a released
# program again and compare. tests/windows/test_release.py does. Only for Windows, where programs are released.
# Qt's libraries take part in it: tools/windows/toolchain builds them so that they do not know their folder.
if(MINGW)
    # The most specific one last: the compiler takes the last that fits.
    add_compile_options(
        -ffile-prefix-map=${VARNEL_WINDOWS_QT}=qt
        -ffile-prefix-map=${PROJECT_SOURCE_DIR}=.
        -ffile-prefix-map=${PROJECT_BINARY_DIR}=build)
    add_link_options(-Wl,--no-insert-timestamp)
elseif(MSVC)
    add_compile_options($<$<COMPILE_LANGUAGE:C,CXX>:/Brepro>)
    add_link_options(/Brepro)
endif()
if(WIN32)
    # The last version of Qt's resources without the times of the files.
    set(CMAKE_AUTORCC_OPTIONS --format-version 1)
endif()
