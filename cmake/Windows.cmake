# What the programs are given for Windows: icon, version and manifest.
enable_language(RC)
find_package(Python3 REQUIRED COMPONENTS Interpreter)

set(packaging ${PROJECT_SOURCE_DIR}/packaging/windows)
set(TRACELYN_ICON ${PROJECT_BINARY_DIR}/tracelyn.ico)
set(icon_pictures)
foreach(size 16 24 32 48 64 128 256)
    list(APPEND icon_pictures ${PROJECT_SOURCE_DIR}/src/app/icons/app-${size}.png)
endforeach()
add_custom_command(OUTPUT ${TRACELYN_ICON}
    COMMAND Python3::Interpreter -B ${packaging}/make-icon.py ${TRACELYN_ICON} ${icon_pictures}
    DEPENDS ${packaging}/make-icon.py ${icon_pictures})
add_custom_target(tracelyn_icon DEPENDS ${TRACELYN_ICON})

# tracelyn_windows_resources(PROGRAM DESCRIPTION [UTF8]): for the directory that makes the program. With UTF8 the
# narrow texts that it exchanges with the system are UTF-8.
function(tracelyn_windows_resources PROGRAM PROGRAM_DESCRIPTION)
    if("UTF8" IN_LIST ARGN)
        set(CODE_PAGE "<activeCodePage xmlns=\"http://schemas.microsoft.com/SMI/2019/WindowsSettings\">UTF-8</activeCodePage>")
    endif()
    set(TRACELYN_MANIFEST ${CMAKE_CURRENT_BINARY_DIR}/${PROGRAM}.manifest)
    configure_file(${packaging}/manifest.xml.in ${TRACELYN_MANIFEST} @ONLY)
    configure_file(${packaging}/resources.rc.in ${CMAKE_CURRENT_BINARY_DIR}/${PROGRAM}.rc @ONLY)
    set_source_files_properties(${CMAKE_CURRENT_BINARY_DIR}/${PROGRAM}.rc PROPERTIES
        OBJECT_DEPENDS "${TRACELYN_ICON};${TRACELYN_MANIFEST}")
    target_sources(${PROGRAM} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${PROGRAM}.rc)
    add_dependencies(${PROGRAM} tracelyn_icon)
endfunction()
