# A rebuild on two cores stays short through ccache, and linking through lld, where they are installed.
find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
    # Otherwise nothing that includes a precompiled header would be kept, or only for the folder that it was built in. What
    # such a header stands for is told by the sum beside it.
    set(CMAKE_CXX_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env CCACHE_PCH_EXTSUM=1 CCACHE_SLOPPINESS=locale,pch_defines,time_macros ${CCACHE_PROGRAM}
    )
endif()

find_program(LLD_PROGRAM ld.lld)
if(LLD_PROGRAM)
    add_link_options(-fuse-ld=lld)
endif()
