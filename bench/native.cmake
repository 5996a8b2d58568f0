# The benchmarks that run natively, one a line.
qelkit_bench(wildcard)
