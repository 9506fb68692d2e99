if(WIN32)
  nmshell_tests(contextmenu_tests SOURCES launch_request_test.cpp DEPENDS contextmenu)
else()
  nmshell_tests(contextmenu_tests
    SOURCES dispatch_host_test.cpp launch_request_test.cpp menu_model_host_test.cpp selection_host_test.cpp
    DEPENDS contextmenu platform_module platform_registry)
  set_source_files_properties(dispatch_host_test.cpp PROPERTIES COMPILE_DEFINITIONS
    "NMSHELL_WEB_HOST=\"${NMSHELL_WEB_HOST}\"")
endif()
# The tables name only the members that a row is about.
target_compile_options(contextmenu_tests PRIVATE -Wno-missing-field-initializers)
