# The project speaks in its own words: no tracked file or file name may talk about a source document or
# narrate procedure steps (tools/check_words.sh), and the checker itself reports what it must and only that.
add_test(NAME check_words COMMAND sh ${PROJECT_SOURCE_DIR}/tools/check_words.sh ${PROJECT_SOURCE_DIR})
add_test(NAME check_words_rules
         COMMAND sh ${CMAKE_CURRENT_SOURCE_DIR}/tools/check_words_test.sh ${PROJECT_SOURCE_DIR}/tools/check_words.sh)
set_tests_properties(check_words check_words_rules PROPERTIES LABELS words SKIP_RETURN_CODE 77)
