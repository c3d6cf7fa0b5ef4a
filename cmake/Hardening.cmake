# What a program that reads other programs' pixels and properties should have against its own mistakes;
# scripts/check-hardening looks for each of them in what was built. The sanitizers bring checks of their own.
if(CMAKE_SYSTEM_NAME STREQUAL "Linux" AND NOT LUMAFRAME_SANITIZER)
  set(CMAKE_POSITION_INDEPENDENT_CODE ON)
  include(CheckPIESupported)
  check_pie_supported(LANGUAGES CXX)
  add_compile_options(-fstack-protector-strong -fstack-clash-protection)
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|i.86")
    add_compile_options(-fcf-protection=full)
  endif()
  # It needs an optimising compiler. Distributions set a lower level.
  add_compile_options($<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE> $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=3>)
  add_link_options(-Wl,-z,relro,-z,now,-z,noexecstack)
endif()
