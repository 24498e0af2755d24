# What a program has beside its code on Windows and macOS: icon, name and version. Not tried yet on either.
if(WIN32)
  set(icon ${CMAKE_CURRENT_BINARY_DIR}/ambrel.ico)
  add_custom_target(program-icon COMMAND ambrel-icons ${icon} BYPRODUCTS ${icon} VERBATIM)
  string(REPLACE "." "," AMBREL_VERSION_NUMBERS ${PROJECT_VERSION})
  configure_file(ambrel.rc.in ambrel.rc @ONLY)
  target_sources(ambrel PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/ambrel.rc)
  set_target_properties(ambrel PROPERTIES WIN32_EXECUTABLE ON)
  add_dependencies(ambrel program-icon)
elseif(APPLE)
  set(icon ${CMAKE_CURRENT_BINARY_DIR}/ambrel.icns)
  set(drawings ${CMAKE_CURRENT_BINARY_DIR}/ambrel.iconset)
  add_custom_target(program-icon
    COMMAND ${CMAKE_COMMAND} -E make_directory ${drawings}
    COMMAND ambrel-icons ${drawings}/icon_256x256.png
    COMMAND iconutil --convert icns --output ${icon} ${drawings}
    BYPRODUCTS ${icon} VERBATIM)
  target_sources(ambrel PRIVATE ${icon})
  set_source_files_properties(${icon} TARGET_DIRECTORY ambrel PROPERTIES
    GENERATED ON MACOSX_PACKAGE_LOCATION Resources)
  set_target_properties(ambrel PROPERTIES
    MACOSX_BUNDLE ON
    MACOSX_BUNDLE_BUNDLE_NAME Ambrel
    MACOSX_BUNDLE_GUI_IDENTIFIER ${application_id}
    MACOSX_BUNDLE_ICON_FILE ambrel.icns
    MACOSX_BUNDLE_BUNDLE_VERSION ${PROJECT_VERSION}
    MACOSX_BUNDLE_SHORT_VERSION_STRING ${PROJECT_VERSION})
  add_dependencies(ambrel program-icon)
endif()
