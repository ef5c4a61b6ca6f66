# A DLL that imports nothing and runs no code on loading, made by GCC or clang for mingw-w64.
set_target_properties(ChannelStrip PROPERTIES PREFIX "")
target_link_options(ChannelStrip PRIVATE -Wl,--entry,0)

# Stack is committed page by page: a function of the compiler's static library touches each page of a
# larger frame.
target_link_libraries(ChannelStrip PRIVATE gcc)

# Windows aligns the stack to 16 bytes. Clang realigns it in functions that keep wider lanes there;
# GCC does so only without unwind tables, and never for what is passed to a call (its bug 54412). Moves
# that need no alignment are as fast.
target_compile_options(ChannelStrip PRIVATE
  $<$<CXX_COMPILER_ID:GNU>:-Wa,-muse-unaligned-vector-move>)
