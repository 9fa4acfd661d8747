# The headers that nearly every file includes are read once for all libraries and once for all tests. A build without
# them, such as the release's, shows that each file names what it uses.
option(QUILLMERE_PRECOMPILED_HEADERS "Read the most used headers once" ON)

set(library_headers
    <algorithm> <array> <atomic> <chrono> <functional> <memory> <mutex> <optional> <string> <utility> <vector>
    <QByteArray> <QDateTime> <QFile> <QFuture> <QHash> <QList> <QObject> <QPointer> <QSet> <QString> <QStringList> <QUrl>
    <QVariant>
)
set(test_headers
    ${library_headers} <condition_variable> <latch> <thread> <gmock/gmock.h> <gtest/gtest.h> <QCoreApplication> <QCoro/QCoroCore>
    <QDir> <QProcess> <QTemporaryDir> <QThreadPool> <QTimer> <QtConcurrentRun>
)

# What ccache knows the precompiled headers of a target by: the headers, and what they are the headers of.
function(quillmere_add_sum_of_precompiled_headers target)
    get_target_property(headers ${target} PRECOMPILE_HEADERS)
    get_target_property(folder ${target} BINARY_DIR)
    string(SHA256 sum "${headers} ${Qt6_VERSION} ${GTest_VERSION} ${CMAKE_CXX_COMPILER_VERSION}")
    file(CONFIGURE OUTPUT ${folder}/CMakeFiles/${target}.dir/cmake_pch.hxx.gch.sum CONTENT ${sum})
endfunction()

function(quillmere_add_precompiled_headers name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "HEADERS;LIBRARIES")
    set(source ${CMAKE_BINARY_DIR}/precompiled/${name}.cpp)
    file(CONFIGURE OUTPUT ${source} CONTENT "")
    add_library(${name} OBJECT ${source})
    set_target_properties(${name} PROPERTIES AUTOMOC OFF)
    target_link_libraries(${name} PRIVATE QuillmereOptions ${arg_LIBRARIES})
    target_precompile_headers(${name} PRIVATE ${arg_HEADERS})
    quillmere_add_sum_of_precompiled_headers(${name})
endfunction()

# To all targets that were made in the folder or below it; those of the tests to what links GoogleTest itself.
function(quillmere_use_precompiled_headers folder)
    get_property(folders DIRECTORY ${folder} PROPERTY SUBDIRECTORIES)
    foreach(below IN LISTS folders)
        quillmere_use_precompiled_headers(${below})
    endforeach()
    get_property(targets DIRECTORY ${folder} PROPERTY BUILDSYSTEM_TARGETS)
    foreach(target IN LISTS targets)
        get_target_property(type ${target} TYPE)
        get_target_property(own ${target} PRECOMPILE_HEADERS)
        get_target_property(libraries ${target} LINK_LIBRARIES)
        if(own OR NOT libraries OR NOT type MATCHES "^(EXECUTABLE|STATIC_LIBRARY|OBJECT_LIBRARY)$")
            continue()
        elseif(libraries MATCHES "GTest::")
            target_precompile_headers(${target} REUSE_FROM QuillmereTestHeaders)
        else()
            target_precompile_headers(${target} REUSE_FROM QuillmereLibraryHeaders)
        endif()
    endforeach()
endfunction()

if(QUILLMERE_PRECOMPILED_HEADERS)
    quillmere_add_precompiled_headers(QuillmereLibraryHeaders HEADERS ${library_headers})
    quillmere_use_precompiled_headers(src)
    if(BUILD_TESTING)
        quillmere_add_precompiled_headers(QuillmereTestHeaders HEADERS ${test_headers} LIBRARIES GTest::gmock)
        # Their folders alone: a test that does not link them lacks their definitions, and could not use the headers.
        foreach(library QCoro6::Core Qt6::Concurrent)
            target_include_directories(QuillmereTestHeaders SYSTEM PRIVATE
                $<TARGET_PROPERTY:${library},INTERFACE_INCLUDE_DIRECTORIES>
            )
        endforeach()
        quillmere_use_precompiled_headers(tests)
        quillmere_use_precompiled_headers(tests/Fakes)
    endif()
endif()
