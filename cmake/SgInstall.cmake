# Install rules and the CMake package: another project can
#   find_package(sgutils REQUIRED)
#   target_link_libraries(app PRIVATE sgutils::sgplatform)   # or sgutils::sgrender
include(CMakePackageConfigHelpers)

set(SG_INSTALL_TARGETS sgplatform)
foreach(t sgdatatypes sgutils sgclasses sgrender)
  if(TARGET ${t})
    list(APPEND SG_INSTALL_TARGETS ${t})
  endif()
endforeach()

install(TARGETS ${SG_INSTALL_TARGETS}
  EXPORT sgutilsTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

foreach(dir platform/vx/include platform/foundation/include platform/vcos/include datatypes/include include classes/include)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/${dir}/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
endforeach()
if(TARGET sgrender)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/render/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
endif()

install(EXPORT sgutilsTargets
  NAMESPACE sgutils::
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/sgutils)

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/sgutilsConfig.cmake.in
  ${CMAKE_BINARY_DIR}/sgutilsConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/sgutils)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/sgutilsConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/sgutilsConfig.cmake ${CMAKE_BINARY_DIR}/sgutilsConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/sgutils)
