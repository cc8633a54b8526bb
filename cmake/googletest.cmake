# Sets ZARN_GTEST to the target that test programs link, if there is a GoogleTest: an installed one, else its sources as Debian packages them.
find_package(GTest QUIET)

set(ZARN_GTEST_SOURCES /usr/src/googletest/googletest CACHE PATH "GoogleTest's sources, used when it is not installed")
set(gtest_sources ${ZARN_GTEST_SOURCES})
# A library that was built without the sanitizers makes them see faults in the containers that it shares with the tests.
if(EXISTS ${gtest_sources}/src/gtest-all.cc AND (NOT GTest_FOUND OR ZARN_SANITIZE))
    add_library(zarn_gtest STATIC ${gtest_sources}/src/gtest-all.cc ${gtest_sources}/src/gtest_main.cc)
    target_include_directories(zarn_gtest SYSTEM PUBLIC ${gtest_sources}/include)
    target_include_directories(zarn_gtest SYSTEM PRIVATE ${gtest_sources})
    set_target_properties(zarn_gtest PROPERTIES COMPILE_WARNING_AS_ERROR OFF)
    if(ZARN_SANITIZE)
        target_compile_options(zarn_gtest PUBLIC -fsanitize=${ZARN_SANITIZE})
        target_link_libraries(zarn_gtest PUBLIC Threads::Threads)
    endif()
    set(ZARN_GTEST zarn_gtest)
elseif(GTest_FOUND)
    set(ZARN_GTEST GTest::gtest_main)
endif()
