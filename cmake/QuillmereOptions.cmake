# Every target of ours links QuillmereOptions: our warnings are errors, our headers are found from src.
add_library(QuillmereOptions INTERFACE)
target_include_directories(QuillmereOptions INTERFACE ${CMAKE_SOURCE_DIR}/src)
target_compile_options(QuillmereOptions INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Werror)
# Said of a fixture that is in no header wherever files are compiled together.
if(CMAKE_UNITY_BUILD)
    target_compile_options(QuillmereOptions INTERFACE -Wno-subobject-linkage)
endif()
# Clang counts changes of the sign among the conversions, GCC does not.
target_compile_options(QuillmereOptions INTERFACE $<$<CXX_COMPILER_ID:Clang>:-Wno-sign-conversion>)
# All code is compiled alike, also what comes with flags of its own from elsewhere, so that it can share precompiled headers.
target_compile_options(QuillmereOptions INTERFACE -pthread)
target_compile_definitions(QuillmereOptions INTERFACE
    QT_NO_CAST_TO_ASCII
    QT_NO_FOREACH
    QT_NO_KEYWORDS
    QT_NO_URL_CAST_FROM_STRING
)
target_link_libraries(QuillmereOptions INTERFACE Qt6::Core)

set(QUILLMERE_SANITIZE "" CACHE STRING "Sanitizers for the whole build, as given to -fsanitize=")
if(QUILLMERE_SANITIZE)
    add_compile_options(-fsanitize=${QUILLMERE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${QUILLMERE_SANITIZE})
    # The check of virtual tables looks at memory through pipes, which trials without descriptors and with failing writes
    # do not grant. Only GCC's build runs such trials.
    if(QUILLMERE_SANITIZE MATCHES "undefined" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        add_compile_options(-fno-sanitize=vptr)
    endif()
    # In every program, so that no way of starting it can lose them.
    file(READ ${CMAKE_SOURCE_DIR}/tests/tsan-suppressions.txt thread_suppressions)
    file(READ ${CMAKE_SOURCE_DIR}/tests/lsan-suppressions.txt leak_suppressions)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
        ${CMAKE_SOURCE_DIR}/tests/tsan-suppressions.txt ${CMAKE_SOURCE_DIR}/tests/lsan-suppressions.txt
    )
    configure_file(${CMAKE_CURRENT_LIST_DIR}/SanitizerDefaults.cpp.in ${CMAKE_BINARY_DIR}/SanitizerDefaults.cpp @ONLY)
    add_library(QuillmereSanitizerDefaults OBJECT ${CMAKE_BINARY_DIR}/SanitizerDefaults.cpp)
    link_libraries(QuillmereSanitizerDefaults)
    # Qt's headers hold fences, which the thread sanitizer does not see; ours has none.
    if(QUILLMERE_SANITIZE MATCHES "thread")
        add_compile_options(-Wno-tsan)
    endif()
endif()

option(QUILLMERE_COVERAGE "Measure which lines the tests reach" OFF)
if(QUILLMERE_COVERAGE)
    add_compile_options(--coverage)
    add_link_options(--coverage)
endif()
