# One list of sanitizers for the whole build, chosen by the presets asan and tsan.
if(LUMAFRAME_SANITIZER)
  add_compile_options(-fsanitize=${LUMAFRAME_SANITIZER} -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${LUMAFRAME_SANITIZER})
endif()
