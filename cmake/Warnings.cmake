# The one interface target through which every target of this project gets its warnings.
add_library(lumaframe_warnings INTERFACE)
target_compile_options(lumaframe_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion
  $<$<BOOL:${LUMAFRAME_WARNINGS_AS_ERRORS}>:-Werror>)
