# The benchmarks that need the platform, one a line.
qelkit_wine_bench(config)
qelkit_wine_bench(format)
qelkit_wine_bench(string)
