// A library that exports none of a producer's entries.

extern "C" __attribute__((visibility("default"))) int NotAnEntry() {
    return 0;
}
