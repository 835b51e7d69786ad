# Makes the target `vellum` the bundle Vellum.app, with all that it needs inside once it is installed.
set(drawing ${PROJECT_SOURCE_DIR}/packaging/vellum.svg)
set(iconset ${CMAKE_CURRENT_BINARY_DIR}/Vellum.iconset)
set(pictures)
foreach(size 16 32 128 256 512)
  math(EXPR double "${size} * 2")
  list(APPEND pictures ${size} ${iconset}/icon_${size}x${size}.png
              ${double} ${iconset}/icon_${size}x${size}@2x.png)
endforeach()
set(icon ${CMAKE_CURRENT_BINARY_DIR}/Vellum.icns)
add_custom_command(
  OUTPUT ${icon}
  COMMAND ${CMAKE_COMMAND} -E make_directory ${iconset}
  COMMAND vellum-draw-icon ${drawing} ${pictures}
  COMMAND iconutil --convert icns --output ${icon} ${iconset}
  DEPENDS vellum-draw-icon ${drawing}
  VERBATIM)
set_source_files_properties(${icon} PROPERTIES MACOSX_PACKAGE_LOCATION Resources)
target_sources(vellum PRIVATE ${icon})
set_target_properties(
  vellum PROPERTIES MACOSX_BUNDLE ON OUTPUT_NAME Vellum
                    MACOSX_BUNDLE_INFO_PLIST ${PROJECT_BINARY_DIR}/packaging/Info.plist)

# macdeployqt takes the plugin that reads SVG along only if the program links the library behind it.
find_package(Qt6 6.4 REQUIRED COMPONENTS Svg)
target_link_libraries(vellum PRIVATE Qt6::Svg)

install(TARGETS vellum BUNDLE DESTINATION .)
find_program(MACDEPLOYQT_PROGRAM macdeployqt HINTS ${QT6_INSTALL_PREFIX}/${QT6_INSTALL_BINS} REQUIRED)
install(
  CODE "execute_process(
  COMMAND \"${MACDEPLOYQT_PROGRAM}\" \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/Vellum.app\"
          \"-qmldir=${PROJECT_SOURCE_DIR}/src/ui\" -codesign=-
  COMMAND_ERROR_IS_FATAL ANY)")
