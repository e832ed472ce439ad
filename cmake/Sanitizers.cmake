# HARBOR_SANITIZE=address,undefined or thread, for everything in the build.
if(HARBOR_SANITIZE)
  add_compile_options(-fsanitize=${HARBOR_SANITIZE} -fno-sanitize-recover=all
                      -fno-omit-frame-pointer -g)
  add_link_options(-fsanitize=${HARBOR_SANITIZE})
endif()
