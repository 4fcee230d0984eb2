# Succeeds where COMPILE fails and says DIAGNOSTIC, a regular expression, in an error.
set(ENV{LC_ALL} C) # the diagnostic in its own words
execute_process(COMMAND ${COMPILE} -DZEL_REFUSED RESULT_VARIABLE result
                OUTPUT_VARIABLE text ERROR_VARIABLE text)
if(result EQUAL 0)
    message(FATAL_ERROR "it compiles")
endif()
if(NOT text MATCHES "error: [^\n]*(${DIAGNOSTIC})")
    message(FATAL_ERROR "refused for another reason:\n${text}")
endif()
