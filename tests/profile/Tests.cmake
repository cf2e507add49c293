target_sources(kolvane_tests PRIVATE ${CMAKE_CURRENT_LIST_DIR}/CProfileTest.cpp)
