# What it costs to run a child, beside the system's own ways of doing it.
add_executable(bench_child ${CMAKE_CURRENT_LIST_DIR}/child.cpp)
target_link_libraries(bench_child PRIVATE platform)
norvaxel_strict(bench_child)
