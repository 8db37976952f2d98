# What Windows shows of the program and needs to know before it starts it: icon, version block,
# manifest.
#
#   varnel_windows_resources(<target>)
option(VARNEL_REQUIRE_ADMINISTRATOR
    "Ask for administrator rights when the program starts; only a test build may do without" ON)

# Who we are stands in one header.
function(varnel_product_text constant variable)
    file(STRINGS ${PROJECT_SOURCE_DIR}/src/product/product.h line REGEX " k${constant} = u\"")
    if(NOT line MATCHES "u\"([^\"]*)\"")
        message(FATAL_ERROR "src/product/product.h has no text k${constant}.")
    endif()
    # The resource compiler spells characters beyond ASCII in its own way.
    string(REPLACE "\\u" "\\x" text "${CMAKE_MATCH_1}")
    set(${variable} "${text}" PARENT_SCOPE)
endfunction()

function(varnel_windows_resources target)
    varnel_product_text(Name name)
    varnel_product_text(SetupName setup_name)
    varnel_product_text(Version version)
    varnel_product_text(Publisher publisher)
    varnel_product_text(PublisherNotice publisher_notice)
    string(REPLACE "." "," version_numbers "${version}.0")
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
