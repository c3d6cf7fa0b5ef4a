# The program as an application bundle: Lumaframe.app, with its icon and its film, signed.
enable_language(OBJCXX)
set(CMAKE_OBJCXX_STANDARD 20)
set(CMAKE_OBJCXX_STANDARD_REQUIRED ON)
set(CMAKE_OBJCXX_EXTENSIONS OFF)
set(LUMAFRAME_SIGNING_IDENTITY "-" CACHE STRING
  "The certificate to sign with, by its name in the keychain; - for a signature without one")

function(lumaframe_make_bundle target)
  set(icon ${CMAKE_SOURCE_DIR}/packaging/macos/Lumaframe.icns)
  set(picture ${CMAKE_SOURCE_DIR}/resources/icons/hicolor/512x512/apps/app.lumaframe.Lumaframe.png)
  set(film ${CMAKE_SOURCE_DIR}/resources/animation.mp4)
  set(resources ${icon} ${picture})
  if(EXISTS ${film})
    list(APPEND resources ${film})
  endif()
  target_sources(${target} PRIVATE ${resources})
  set_source_files_properties(${resources} PROPERTIES MACOSX_PACKAGE_LOCATION Resources)
  set_target_properties(${target} PROPERTIES
    OUTPUT_NAME Lumaframe
    MACOSX_BUNDLE TRUE
    MACOSX_BUNDLE_INFO_PLIST ${CMAKE_SOURCE_DIR}/packaging/macos/Info.plist.in
    MACOSX_BUNDLE_BUNDLE_NAME Lumaframe
    MACOSX_BUNDLE_GUI_IDENTIFIER app.lumaframe.Lumaframe
    MACOSX_BUNDLE_BUNDLE_VERSION ${PROJECT_VERSION}
    MACOSX_BUNDLE_SHORT_VERSION_STRING ${PROJECT_VERSION}
    MACOSX_BUNDLE_ICON_FILE Lumaframe)
  # The permissions that the user grants are kept for this signature. Only one exception from the hardened
  # runtime is asked for: the toolkit's libraries carry the signature of whoever built them. There is no
  # sandbox, in which a program may neither tap the keyboard nor write into any folder. The file that says
  # so has no comments: signing is said to refuse them.
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS
    ${resources}
    ${CMAKE_SOURCE_DIR}/packaging/macos/Info.plist.in
    ${CMAKE_SOURCE_DIR}/packaging/macos/Lumaframe.entitlements)
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND codesign --force --sign ${LUMAFRAME_SIGNING_IDENTITY} --options runtime
      --entitlements ${CMAKE_SOURCE_DIR}/packaging/macos/Lumaframe.entitlements
      $<TARGET_BUNDLE_DIR:${target}>
    COMMENT "Signing Lumaframe.app as \"${LUMAFRAME_SIGNING_IDENTITY}\"" VERBATIM)
endfunction()
