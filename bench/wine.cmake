# The benchmarks that need the platform, one a line.
qelkit_wine_bench(format)
qelkit_wine_bench(string)
qelkit_wine_bench(tree)
