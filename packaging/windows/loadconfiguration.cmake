# Makes Windows look for the libraries that the program imports in its system folder alone. Elsewhere it looks
# beside the program first, which is the download folder, where every web page can put a file.
#
#   varnel_windows_load_configuration(<target>)
function(varnel_windows_load_configuration target)
    get_target_property(qt_type Qt6::Core TYPE)
    if(NOT qt_type STREQUAL STATIC_LIBRARY)
        message(STATUS "Qt's libraries have to lie beside ${target}, so that any library there is loaded.")
        return()
    endif()
    if(MSVC)
        target_link_options(${target} PRIVATE /DEPENDENTLOADFLAG:0x800)
        return()
    endif()
    find_package(Python3 REQUIRED COMPONENTS Interpreter)
    set(tool ${PROJECT_SOURCE_DIR}/tools/windows/add-load-configuration)
    target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/packaging/windows/loadconfiguration.cpp)
    target_link_options(${target} PRIVATE -Wl,-u,_load_config_used) # nothing in the program refers to it
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${tool})
    add_custom_command(TARGET ${target} POST_BUILD
        COMMAND ${Python3_EXECUTABLE} ${tool} $<TARGET_FILE:${target}> VERBATIM)
endfunction()
