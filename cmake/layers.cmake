# Headers are included as "<folder>/<file>.h" from src/, and product/product.h from where it is made.
# Which folder may include which is up to tools/check-includes, which the test unit.includes runs.
set(VARNEL_MADE_HEADERS ${PROJECT_BINARY_DIR}/include)
target_include_directories(varnel_build_options INTERFACE
    ${PROJECT_SOURCE_DIR}/src ${VARNEL_MADE_HEADERS})

# One static library per folder of src/.
#
#   varnel_layer(<name> SOURCES <file>... PUBLIC <library>... PRIVATE <library>...)
#
# PUBLIC are the libraries that the layer's headers show, PRIVATE those that only its sources use. The
# layers among them are also collected for tools/check-includes.
function(varnel_layer name)
    cmake_parse_arguments(PARSE_ARGV 1 LAYER "" "" "SOURCES;PUBLIC;PRIVATE")
    foreach(library IN LISTS LAYER_PUBLIC LAYER_PRIVATE)
        if(NOT TARGET ${library})
            message(FATAL_ERROR "${name} links ${library}, which src/CMakeLists.txt adds later or never.")
        endif()
    endforeach()
    add_library(varnel_${name} STATIC ${LAYER_SOURCES})
    set_target_properties(varnel_${name} PROPERTIES AUTOMOC ON)
    target_link_libraries(varnel_${name}
        PUBLIC ${LAYER_PUBLIC}
        PRIVATE ${LAYER_PRIVATE} varnel_build_options)

    foreach(libraries LAYER_PUBLIC LAYER_PRIVATE)
        list(FILTER ${libraries} INCLUDE REGEX "^varnel_")
        list(TRANSFORM ${libraries} REPLACE "^varnel_" "")
        list(JOIN ${libraries} "," ${libraries})
    endforeach()
    set_property(GLOBAL APPEND PROPERTY VARNEL_LAYERS "${name}:${LAYER_PUBLIC}:${LAYER_PRIVATE}")
endfunction()

# Suffix of the sources that are written once per platform.
if(WIN32)
    set(VARNEL_PLATFORM win)
else()
    set(VARNEL_PLATFORM unix)
endif()
