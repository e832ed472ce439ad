# The headers that the sources of a target have in common, read once for all of them. Tests share the
# same few and dear headers, but not their names: each source is compiled by itself.
#
# A compiler cache knows a source by what it includes. Precompiled headers carry the folder they were
# made in, so with a cache that serves several copies of the project they cost more than they save.
if(CCACHE AND NOT DEFINED ENV{CCACHE_DISABLE})
  set(without_cache OFF)
else()
  set(without_cache ON)
endif()
option(HARBOR_PRECOMPILED "Precompile what the sources of a test program include" ${without_cache})

function(harbor_precompile target)
  if(HARBOR_PRECOMPILED)
    target_precompile_headers(${target} PRIVATE ${ARGN})
  endif()
endfunction()
