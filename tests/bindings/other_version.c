/* A library of another version, as far as the bindings look before they refuse it. */
#if defined(__GNUC__)
__attribute__((visibility("default")))
#endif
float TabrinGetLibraryVersion(void);

float TabrinGetLibraryVersion(void) {
    return 1.30F;
}
