# An answer's way to rows, and a search beside the bare curl command (bench/search.py).
find_package(benchmark REQUIRED)
add_executable(bench_answer ${CMAKE_CURRENT_LIST_DIR}/answer.cpp)
target_link_libraries(bench_answer PRIVATE search benchmark::benchmark)
add_executable(bench_search ${CMAKE_CURRENT_LIST_DIR}/search.cpp)
target_link_libraries(bench_search PRIVATE search)
norvaxel_strict(bench_answer)
norvaxel_strict(bench_search)
