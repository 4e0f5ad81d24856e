# The libraries for other people's programs, their headers, and the package by which find_package(Volvelle) finds them:
# targets Volvelle::base and so on. `cmake --install BUILD --component development --prefix PREFIX` installs them.
include(CMakePackageConfigHelpers)
set(exported base wire files musicsequence midi theory aumidievents sequence patterns phrases realtime)
set(package lib/cmake/Volvelle)
add_custom_target(development)
foreach(layer folder IN ZIP_LISTS VOLVELLE_LAYERS VOLVELLE_LAYER_FOLDERS)
  if(NOT layer IN_LIST exported)
    continue()
  endif()
  cmake_path(GET folder PARENT_PATH parent)
  set_target_properties(volvelle_${layer} PROPERTIES EXPORT_NAME ${layer})
  add_dependencies(development volvelle_${layer})
  target_compile_features(volvelle_${layer} PUBLIC cxx_std_20)
  install(TARGETS volvelle_${layer} EXPORT VolvelleTargets COMPONENT development EXCLUDE_FROM_ALL)
  install(DIRECTORY "${PROJECT_SOURCE_DIR}/src/${folder}" DESTINATION "include/volvelle/${parent}"
    COMPONENT development EXCLUDE_FROM_ALL FILES_MATCHING PATTERN "*.h")
endforeach()
install(EXPORT VolvelleTargets NAMESPACE Volvelle:: DESTINATION ${package} COMPONENT development EXCLUDE_FROM_ALL)
configure_file("${CMAKE_CURRENT_LIST_DIR}/VolvelleConfig.cmake" "${PROJECT_BINARY_DIR}/VolvelleConfig.cmake" COPYONLY)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/VolvelleConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/VolvelleConfig.cmake" "${PROJECT_BINARY_DIR}/VolvelleConfigVersion.cmake"
  DESTINATION ${package} COMPONENT development EXCLUDE_FROM_ALL)
