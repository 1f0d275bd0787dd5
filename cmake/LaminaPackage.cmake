# What other programs link: find_package(lamina), then lamina::base, lamina::image, lamina::imageops or lamina::gpu.
# Headers keep their modules' paths below include/lamina. `cmake --install BUILD --component development` installs it
# alone.
include(CMakePackageConfigHelpers)

# Every header of the library's modules is public, but for those marked as a module's own (NAME_p.h).
set(public_modules base files confined pixels drawing codecs named text gl imageops gpukernels gpucore gpusources
    gpucolor gpublend gpublur gpuedge gpueffect gpuanalysis gpufilters)
set(LAMINA_PUBLIC_HEADERS "")
foreach(module IN LISTS public_modules)
    get_target_property(folder lamina_${module} SOURCE_DIR)
    file(GLOB headers CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR}/src ${folder}/*.h)
    list(FILTER headers EXCLUDE REGEX "_p\\.h$")
    list(APPEND LAMINA_PUBLIC_HEADERS ${headers})
endforeach()
foreach(header IN LISTS LAMINA_PUBLIC_HEADERS)
    cmake_path(GET header PARENT_PATH folder)
    install(FILES ${PROJECT_SOURCE_DIR}/src/${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/lamina/${folder}
        COMPONENT development)
endforeach()

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/lamina)
foreach(module IN LISTS public_modules ITEMS image gpu)
    set_target_properties(lamina_${module} PROPERTIES EXPORT_NAME ${module})
    install(TARGETS lamina_${module} EXPORT laminaTargets
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/lamina)
endforeach()
install(EXPORT laminaTargets NAMESPACE lamina:: DESTINATION ${package_folder} COMPONENT development)

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/laminaConfig.cmake.in ${PROJECT_BINARY_DIR}/laminaConfig.cmake
    INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/laminaConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/laminaConfig.cmake ${PROJECT_BINARY_DIR}/laminaConfigVersion.cmake
    DESTINATION ${package_folder} COMPONENT development)
