# fmt by its headers alone. Those of this machine's system are beside them, so they are copied.
if(NOT TARGET fmt::fmt)
  file(COPY /usr/include/fmt DESTINATION ${CMAKE_BINARY_DIR}/headers)
  add_library(fmt::fmt-header-only INTERFACE IMPORTED GLOBAL)
  target_include_directories(fmt::fmt-header-only SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/headers)
  target_compile_definitions(fmt::fmt-header-only INTERFACE FMT_HEADER_ONLY)
  add_library(fmt::fmt ALIAS fmt::fmt-header-only)
endif()
set(fmt_FOUND ON)
