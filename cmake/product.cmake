# Who we are, from src/product/product.ini: each value in a variable product_<key>.
set(varnel_product_file ${CMAKE_CURRENT_LIST_DIR}/../src/product/product.ini)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${varnel_product_file})
file(STRINGS ${varnel_product_file} lines REGEX "^[a-z_]+=" ENCODING UTF-8)
foreach(line IN LISTS lines)
    string(REGEX MATCH "^([a-z_]+)=(.*)$" line "${line}")
    set(product_${CMAKE_MATCH_1} "${CMAKE_MATCH_2}")
endforeach()
