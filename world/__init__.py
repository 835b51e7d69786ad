"""Processes and peers on 127.0.0.1 around the program under test, for tests and benchmarks."""
