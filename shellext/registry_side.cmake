# Settings and registration: what the extension keeps in the registry. Their tests look at the host's hive.
nmshell_library(nmshell_settings SOURCES settings.cpp settings_writers.cpp DEPENDS owlkit_registry)
nmshell_library(nmshell_registration SOURCES registration.cpp DEPENDS owlkit_registry owlkit_process)
if(NOT WIN32)
  nmshell_tests(settings_host_tests SOURCES settings_host_test.cpp DEPENDS nmshell_settings)
  nmshell_tests(registration_host_tests SOURCES registration_host_test.cpp
    DEPENDS nmshell_registration nmshell_settings)
endif()
