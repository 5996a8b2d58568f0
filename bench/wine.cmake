# The benchmarks that need the platform, one a line.
