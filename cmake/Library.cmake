# What a program needs that uses Tracelyn as a library: the component Development of `cmake --install`, which the
# packages for users leave out. docs/library.md tells how to use it.
include(CMakePackageConfigHelpers)

# The last ones are there for the linker.
set(libraries recording model reader measure render csv support xmldom)
# The headers to include, and what those include. Below include/tracelyn they lie as below src/.
set(headers
    measure/Comparison.h measure/ComparisonTable.h measure/CompensatedSum.h measure/Moments.h measure/SampleChoice.h
    measure/Signals.h measure/Statistics.h measure/StatisticsIndex.h measure/StatisticsTable.h measure/Table.h
    model/GraphData.h model/GraphDataGroup.h model/GraphDataSet.h model/GraphDataTypedSource.h
    model/GraphDataVariants.h model/MinMax.h
    reader/AnalysisFile.h reader/Problems.h reader/SignalFileReader.h reader/container/Deflate.h
    reader/container/zip.h reader/csv/CsvExport.h reader/csv/CsvFile.h
    render/Canvas.h render/Graph.h render/GraphLayout.h render/GraphWindow.h render/Mapping.h render/Picture.h
    render/PictureView.h render/PlotOptions.h
    support/LargePages.h support/Limits.h support/OutputFile.h support/Progress.h support/ScratchFolder.h)

set(package ${CMAKE_INSTALL_LIBDIR}/cmake/Tracelyn)
set(include ${CMAKE_INSTALL_INCLUDEDIR})

# Their names are common ones: they have a folder of their own.
install(TARGETS ${libraries} EXPORT TracelynTargets
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}/tracelyn COMPONENT Development
    INCLUDES DESTINATION ${include} ${include}/tracelyn)
install(FILES src/tracelyn/Recording.h DESTINATION ${include}/tracelyn COMPONENT Development)
foreach(header IN LISTS headers)
    cmake_path(GET header PARENT_PATH folder)
    install(FILES src/${header} DESTINATION ${include}/tracelyn/${folder} COMPONENT Development)
endforeach()

install(EXPORT TracelynTargets NAMESPACE Tracelyn:: DESTINATION ${package} COMPONENT Development)
configure_package_config_file(cmake/TracelynConfig.cmake.in ${PROJECT_BINARY_DIR}/TracelynConfig.cmake
    INSTALL_DESTINATION ${package})
# A new minor version may change what is declared.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/TracelynConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/TracelynConfig.cmake ${PROJECT_BINARY_DIR}/TracelynConfigVersion.cmake
    DESTINATION ${package} COMPONENT Development)
