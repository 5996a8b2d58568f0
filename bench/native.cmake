# The benchmarks that run natively, one a line.
find_package(absl REQUIRED)
find_package(Boost REQUIRED)
qelkit_bench(hash LIBRARIES absl::flat_hash_map Boost::headers)
qelkit_bench(option_blob)
