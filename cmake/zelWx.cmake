# One target, zel::wx, for the toolkit, whose own find module sets variables only. The build includes this file, and it
# is installed for the package.
include_guard(GLOBAL)
find_package(wxWidgets 3.2 REQUIRED COMPONENTS gl core base)
if(NOT TARGET zel::wx)
  add_library(zel::wx INTERFACE IMPORTED)
  target_include_directories(zel::wx SYSTEM INTERFACE ${wxWidgets_INCLUDE_DIRS})
  target_compile_definitions(zel::wx INTERFACE ${wxWidgets_DEFINITIONS})
  target_compile_options(zel::wx INTERFACE ${wxWidgets_CXX_FLAGS})
  target_link_directories(zel::wx INTERFACE ${wxWidgets_LIBRARY_DIRS})
  target_link_libraries(zel::wx INTERFACE ${wxWidgets_LIBRARIES})
endif()
