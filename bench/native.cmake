# The benchmarks that run natively, one a line.
qelkit_bench(compress LIBRARIES z lz4)
find_package(absl REQUIRED)
find_package(Boost REQUIRED)
qelkit_bench(hash LIBRARIES absl::flat_hash_map Boost::headers)
qelkit_bench(ip_text LIBRARIES Boost::headers)
qelkit_bench(range_list LIBRARIES roaring Boost::headers)
qelkit_bench(option_blob)
