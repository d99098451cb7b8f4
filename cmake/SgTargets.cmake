# Common settings for every target of the project.

# Warnings that every target compiles clean with.
function(sg_target_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic)
endfunction()

# A shared library of the project: hidden visibility, an export macro switched
# to "export" while the library itself is built, and the project's warnings.
#   sg_add_shared_library(NAME EXPORT_DEFINE SOURCES...)
function(sg_add_shared_library name export_define)
  add_library(${name} SHARED ${ARGN})
  target_compile_definitions(${name} PRIVATE ${export_define})
  sg_target_warnings(${name})
  set_target_properties(${name} PROPERTIES
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR})
endfunction()
