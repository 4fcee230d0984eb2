# The programs that every consumer builds, each a test that it runs.
enable_testing()
foreach(program IN ITEMS host early)
    add_executable(${program} ${CMAKE_CURRENT_LIST_DIR}/${program}.cpp)
    target_compile_options(${program} PRIVATE -Wall -Wextra -Werror)
    target_link_libraries(${program} PRIVATE ZelStyleKit::ZelStyleKit)
    add_test(NAME ${program} COMMAND ${program})
endforeach()
