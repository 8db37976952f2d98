# What Windows shows of the program and needs to know before it starts it: icon, version block,
# manifest.
#
#   varnel_windows_resources(<target>)
option(VARNEL_REQUIRE_ADMINISTRATOR
    "Ask for administrator rights when the program starts; only a test build may do without" ON)

function(varnel_windows_resources target)
    string(REPLACE "." "," version_numbers "${product_version}.0")
    string(REPLACE " " "" assembly "${product_publisher}.${product_name}.Setup")
    set(execution_level asInvoker)
    if(VARNEL_REQUIRE_ADMINISTRATOR)
        set(execution_level requireAdministrator)
    endif()

    set(source ${PROJECT_SOURCE_DIR}/packaging/windows)
    set(icon ${source}/varnel.ico)
    set(manifest ${CMAKE_CURRENT_BINARY_DIR}/varnel.manifest)
    configure_file(${source}/varnel.manifest.in ${manifest} @ONLY)
    configure_file(${source}/varnel.rc.in ${CMAKE_CURRENT_BINARY_DIR}/varnel.rc @ONLY)
    target_sources(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/varnel.rc)
    set_source_files_properties(${CMAKE_CURRENT_BINARY_DIR}/varnel.rc PROPERTIES
        OBJECT_DEPENDS "${icon};${manifest}")
    if(MSVC)
        # The manifest is in the resources; a second one would not link.
        target_link_options(${target} PRIVATE /MANIFEST:NO)
    endif()
endfunction()
