# The complete installation that a build leaves in root/ of the build folder, and that
# `cmake --install` copies.
set(GANTRY_ROOT_TREE ${CMAKE_BINARY_DIR}/root)
foreach(folder bin include lib targets html samples packages)
  file(MAKE_DIRECTORY ${GANTRY_ROOT_TREE}/${folder})
  install(DIRECTORY ${GANTRY_ROOT_TREE}/${folder}/ DESTINATION ${folder} USE_SOURCE_PERMISSIONS
    PATTERN "bin/*" EXCLUDE)
endforeach()
