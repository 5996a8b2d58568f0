# The benchmarks that need the platform, one a line.
qelkit_wine_bench(config)
qelkit_wine_bench(format)
qelkit_wine_bench(record_file)
qelkit_wine_bench(string)
qelkit_wine_bench(tm_datetime)
qelkit_wine_bench(report)
qelkit_wine_bench(runtime)
qelkit_wine_bench(tree)
