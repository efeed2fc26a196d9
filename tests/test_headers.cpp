// The program whose precompiled header all tests use; it has no tests of its own.
