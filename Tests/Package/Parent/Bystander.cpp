// Has nothing to do with the library; compiled with the parent's settings alone.
#if __cplusplus != 201703L || !defined(PARENT_FLAG) || !defined(PARENT_DEFINITION)
#error "The settings of the parent are gone."
#endif
