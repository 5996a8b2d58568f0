# The benchmarks that run natively, one a line.
qelkit_bench(ip_text)
qelkit_bench(range_list LIBRARIES roaring)
