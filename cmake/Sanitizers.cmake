# One list of sanitizers for the whole build, chosen by the presets asan and tsan.
if(LUMAFRAME_SANITIZER)
  add_compile_options(-fsanitize=${LUMAFRAME_SANITIZER} -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${LUMAFRAME_SANITIZER})
  # To look at an object's type it asks the kernel whether the object can be read, by calls that the
  # confined helpers have given up: there it takes every object for a broken one.
  if(LUMAFRAME_SANITIZER MATCHES "undefined" AND NOT LUMAFRAME_BUILD_FUZZ)
    add_compile_options(-fno-sanitize=vptr)
  endif()
endif()
