# What every target of ours is compiled with. Warnings become errors where CI is set, so that a
# newcomer's different compiler version does not stop them from building.
option(VARNEL_WARNINGS_AS_ERRORS "Treat compiler warnings as errors" OFF)
if("$ENV{CI}")
    set(VARNEL_WARNINGS_AS_ERRORS ON)
endif()

add_library(varnel_build_options INTERFACE)
target_compile_definitions(varnel_build_options INTERFACE
    QT_NO_KEYWORDS
    QT_USE_QSTRINGBUILDER
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_URL_CAST_FROM_STRING
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_DISABLE_DEPRECATED_BEFORE=0x060400
)
if(MSVC)
    target_compile_options(varnel_build_options INTERFACE /W4 /utf-8
        $<$<BOOL:${VARNEL_WARNINGS_AS_ERRORS}>:/WX>)
else()
    target_compile_options(varnel_build_options INTERFACE
        -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
        # GCC 12 misjudges the size of buffers in inlined string building.
        $<$<CXX_COMPILER_ID:GNU>:-Wno-stringop-overflow>
        $<$<BOOL:${VARNEL_WARNINGS_AS_ERRORS}>:-Werror>)
endif()
