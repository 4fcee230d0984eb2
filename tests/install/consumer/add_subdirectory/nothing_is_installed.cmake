# Installing the consumer, which has no install rules of its own, must leave the prefix empty.
set(prefix ${BUILD}/stage)
file(REMOVE_RECURSE ${prefix})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${prefix}
                COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET)
file(GLOB_RECURSE files ${prefix}/*)
if(files)
    message(FATAL_ERROR "installed with the consumer: ${files}")
endif()
