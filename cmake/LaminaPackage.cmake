# What other programs link: find_package(lamina), then lamina::base, lamina::image, lamina::imageops or lamina::gpu. Headers
# keep their rooms' paths below include/lamina. `cmake --install BUILD --component development` installs it alone.
include(CMakePackageConfigHelpers)

set(LAMINA_PUBLIC_HEADERS
    platform/base/CGAffineTransform.h
    platform/base/CGGeometry.h
    platform/base/CMTime.h
    platform/base/DispatchQueue.h
    platform/base/DispatchSemaphore.h
    platform/base/Log.h
    platform/base/NotificationCenter.h
    platform/base/Result.h
    platform/base/UIColor.h
    platform/base/UIScreen.h
    platform/base/WorkerPool.h
    platform/image/CGColorSpace.h
    platform/image/CGContext.h
    platform/image/CGImage.h
    platform/image/ImageSaving.h
    platform/image/PictureDecoding.h
    platform/image/PictureEncoding.h
    platform/image/PixelBuffer.h
    platform/image/Resampling.h
    platform/image/SquareCrop.h
    platform/image/UIBezierPath.h
    platform/image/UIImage.h
    imageops/ImageFilters.h
    imageops/ImageGeometry.h
)
# The filter graph is public as a whole, but for a few helpers of its sources: new filters stand on all of it.
set(private_headers "(_p|GLErrors|GLTextureFormat|LookupStage|PictureBytes)\\.h$")
foreach(folder IN ITEMS platform/gl gpu/core gpu/sources gpu/filters)
    file(GLOB headers CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/src/${folder}/*.h)
    list(FILTER headers EXCLUDE REGEX ${private_headers})
    list(APPEND LAMINA_PUBLIC_HEADERS ${headers})
endforeach()
foreach(header IN LISTS LAMINA_PUBLIC_HEADERS)
    cmake_path(GET header PARENT_PATH folder)
    install(FILES ${PROJECT_SOURCE_DIR}/src/${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/lamina/${folder}
        COMPONENT development)
endforeach()

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/lamina)
set(rooms base image imageops gl gpucore gpusources gpufilters gpu)
foreach(room IN LISTS rooms)
    set_target_properties(lamina_${room} PROPERTIES EXPORT_NAME ${room})
    install(TARGETS lamina_${room} EXPORT laminaTargets
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/lamina)
endforeach()
install(EXPORT laminaTargets NAMESPACE lamina:: DESTINATION ${package_folder} COMPONENT development)

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/laminaConfig.cmake.in ${PROJECT_BINARY_DIR}/laminaConfig.cmake
    INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/laminaConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/laminaConfig.cmake ${PROJECT_BINARY_DIR}/laminaConfigVersion.cmake
    DESTINATION ${package_folder} COMPONENT development)
