# What `cmake --install --strip` strips with. llvm-strip, which CMake takes beside clang, drops every
# section that is not loaded, the texts of messages and the manifest among them; GNU strip keeps them.
if(CMAKE_STRIP MATCHES "llvm-strip")
  find_program(HARBOR_STRIP strip)
  if(HARBOR_STRIP)
    set(CMAKE_STRIP ${HARBOR_STRIP})
  else()
    message(WARNING "No GNU strip found: a stripped installation has no message texts and no "
                    "manifest")
  endif()
endif()
