# Installs the library so that another project finds it with find_package(FuzzyLogic).

include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/FuzzyLogic)

set_target_properties(fuzzylogic PROPERTIES EXPORT_NAME FuzzyLogic)
install(TARGETS fuzzylogic EXPORT FuzzyLogic FILE_SET HEADERS)

# The library needs no other package, so the exported targets are the whole package configuration.
install(EXPORT FuzzyLogic NAMESPACE FuzzyLogic:: FILE FuzzyLogicConfig.cmake DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/FuzzyLogicConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/FuzzyLogicConfigVersion.cmake DESTINATION ${package_dir})
