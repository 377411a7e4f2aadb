# The undefined-behaviour check of a thread's variable relies on processor flags that the linker's shortcut for
# position-independent programs loses (GCC 12): code as for a library has no such shortcut.
target_compile_options(${target} PRIVATE -fPIC)
