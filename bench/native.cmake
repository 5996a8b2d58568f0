# The benchmarks that run natively, one a line.
