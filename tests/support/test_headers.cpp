// Carries the precompiled headers of the tests; compiles nothing of its own.
