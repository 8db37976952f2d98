# One static library per folder of src/. A layer sees only the headers of the layers it links, so an
# include against the order does not compile.
#
#   varnel_layer(<name> SOURCES <file>... LINKS <library>...)
function(varnel_layer name)
    cmake_parse_arguments(PARSE_ARGV 1 LAYER "" "" "SOURCES;LINKS")
    add_library(varnel_${name} STATIC ${LAYER_SOURCES})
    set_target_properties(varnel_${name} PROPERTIES AUTOMOC ON)
    varnel_layer_headers(varnel_${name} PUBLIC ${name})
    target_link_libraries(varnel_${name}
        PUBLIC ${LAYER_LINKS}
        PRIVATE varnel_build_options)
endfunction()

# Headers are included as "<folder>/<file>.h". The include path holds a link to that one folder, which
# keeps the others out of reach; a host that may not make links gets the whole of src/ instead.
function(varnel_layer_headers target scope name)
    set(include ${CMAKE_CURRENT_BINARY_DIR}/include)
    file(MAKE_DIRECTORY ${include})
    file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${include}/${name} SYMBOLIC RESULT error)
    if(NOT error EQUAL 0)
        set(include ${PROJECT_SOURCE_DIR}/src)
    endif()
    target_include_directories(${target} ${scope} ${include})
endfunction()

# Suffix of the sources that are written once per platform.
if(WIN32)
    set(VARNEL_PLATFORM win)
else()
    set(VARNEL_PLATFORM unix)
endif()
