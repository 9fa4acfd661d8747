# A rebuild on two cores stays short through ccache, and linking through lld, where they are installed.
find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()

find_program(LLD_PROGRAM ld.lld)
if(LLD_PROGRAM)
    add_link_options(-fuse-ld=lld)
endif()
