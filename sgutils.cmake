# sgutils: the base library of the graphics-object system. Hand-written frame
# under src/, generated classes under objects/, public headers under
# include/sgutils/. Source lists are globbed, so new files need no edit here.
file(GLOB_RECURSE SGUTILS_SOURCES CONFIGURE_DEPENDS
  "${PROJECT_SOURCE_DIR}/src/*.cpp"
  "${PROJECT_SOURCE_DIR}/objects/*.cpp")

sg_add_shared_library(sgutils SGUTILS_BUILDING ${SGUTILS_SOURCES})

target_include_directories(sgutils
  PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>
  PRIVATE
    ${PROJECT_SOURCE_DIR})

target_link_libraries(sgutils PUBLIC sgdatatypes sgplatform)

add_library(sgutils::sgutils ALIAS sgutils)

# The generated halves of the classes under objects/: tools/genmixins.py
# turns each objects/<Class>/<Class>.def into sgutils/objects/<Class>.gen.h
# and .gen.cpp under the build tree; the hand-written <Class>.cpp beside the
# description is picked up by the glob above.
file(GLOB SGUTILS_CLASS_DEFS CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/objects/*/*.def")
set(SGUTILS_GENERATED_DIR "${CMAKE_BINARY_DIR}/generated")
sg_generate_classes(sgutils "${SGUTILS_GENERATED_DIR}" ${SGUTILS_CLASS_DEFS})
# src/startup/GeneratedClasses.cpp registers them from this list, which the
# generator writes in parent order from the same descriptions.
sg_generate_registrations(sgutils "${CMAKE_BINARY_DIR}/generated-private/GeneratedRegistrations.h" ${SGUTILS_CLASS_DEFS})
# The Graphics class's own properties, described as rows over its
# hand-written block; private to the library, so not installed.
sg_generate_classes(sgutils "${CMAKE_BINARY_DIR}/generated-private"
  "${PROJECT_SOURCE_DIR}/src/classinfo/GraphicsProperties.def")
install(DIRECTORY "${SGUTILS_GENERATED_DIR}/sgutils/objects/" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/sgutils/objects"
  FILES_MATCHING PATTERN "*.gen.h")
