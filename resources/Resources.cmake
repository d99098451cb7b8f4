# Included from platform/CMakeLists.txt (the custom command must live in the
# folder of the target that compiles its output).
#
# Texts that ship inside the platform library: the message catalogs and the
# theme colour table. They are compiled in, so nothing has to find a resource
# folder at run time. Every file below this folder except this one is embedded
# under its path relative to this folder ("messages/vcos.msg").
file(GLOB_RECURSE SG_RESOURCE_FILES CONFIGURE_DEPENDS
  "${PROJECT_SOURCE_DIR}/resources/messages/*.msg"
  "${PROJECT_SOURCE_DIR}/resources/themes/*.tsv")

set(SG_EMBEDDED_RESOURCES_CPP "${CMAKE_BINARY_DIR}/generated/SgEmbeddedResources.cpp")
add_custom_command(
  OUTPUT "${CMAKE_BINARY_DIR}/generated/SgEmbeddedResources.cpp"
  COMMAND ${CMAKE_COMMAND}
          -DSOURCE_DIR=${PROJECT_SOURCE_DIR}/resources
          -DOUTPUT=${CMAKE_BINARY_DIR}/generated/SgEmbeddedResources.cpp
          -P ${PROJECT_SOURCE_DIR}/cmake/EmbedResources.cmake
  DEPENDS ${SG_RESOURCE_FILES} ${PROJECT_SOURCE_DIR}/cmake/EmbedResources.cmake
  COMMENT "Embedding message catalogs and theme tables"
  VERBATIM)
