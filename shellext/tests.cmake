if(NOT WIN32)
  nmshell_tests(shellext_tests
    SOURCES class_factory_host_test.cpp shell_menu_extension_host_test.cpp ../tests/failing_allocation.cpp
    DEPENDS shellext platform_registry)
endif()
