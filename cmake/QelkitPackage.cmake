# What is installed, and the archive of it.
include_guard(GLOBAL)
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(config_folder "${CMAKE_INSTALL_LIBDIR}/cmake/qelkit2")
set(share_folder "${CMAKE_INSTALL_DATADIR}/qelkit2")

install(TARGETS QELKIT2_64 EXPORT qelkit2Targets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/qelkit2)
get_target_property(runtime_dlls QELKIT2_64 QELKIT_RUNTIME_DLLS)
if(runtime_dlls)
  install(FILES ${runtime_dlls} DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

# Visual C++ reaches the C functions of a mingw build through an import library of its own kind.
find_program(QELKIT_DLLTOOL llvm-dlltool)
if(MINGW AND QELKIT_DLLTOOL)
  set(definition "${PROJECT_SOURCE_DIR}/source/report/table_builder_c.def")
  set(import_library "${PROJECT_BINARY_DIR}/QELKIT2_64.lib")
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${definition}")
  execute_process(COMMAND_ERROR_IS_FATAL ANY
    COMMAND "${QELKIT_DLLTOOL}" -m i386:x86-64 -d "${definition}" -l "${import_library}")
  install(FILES "${definition}" "${import_library}" DESTINATION ${CMAKE_INSTALL_LIBDIR})
endif()

install(EXPORT qelkit2Targets NAMESPACE qelkit2:: DESTINATION ${config_folder})
configure_package_config_file("${CMAKE_CURRENT_LIST_DIR}/qelkit2Config.cmake.in"
  "${PROJECT_BINARY_DIR}/qelkit2Config.cmake"
  INSTALL_DESTINATION ${config_folder} PATH_VARS CMAKE_INSTALL_BINDIR)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/qelkit2ConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/qelkit2Config.cmake"
  "${PROJECT_BINARY_DIR}/qelkit2ConfigVersion.cmake" DESTINATION ${config_folder})

# The pkg-config file finds the rest from where it lies itself.
file(RELATIVE_PATH QELKIT_PC_TO_PREFIX "/prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/prefix")
configure_file("${CMAKE_CURRENT_LIST_DIR}/qelkit2.pc.in" "${PROJECT_BINARY_DIR}/qelkit2.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/qelkit2.pc" DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(FILES "${PROJECT_SOURCE_DIR}/README.md" "${PROJECT_SOURCE_DIR}/CHANGELOG.md"
  DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY "${PROJECT_SOURCE_DIR}/docs" DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY "${PROJECT_SOURCE_DIR}/samples" DESTINATION ${share_folder})
install(FILES "${PROJECT_SOURCE_DIR}/resources/qelkit2.natvis" DESTINATION ${share_folder})

set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_NAME qelkit2)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_FILE_NAME qelkit2-${PROJECT_VERSION}-win64)
set(CPACK_POST_BUILD_SCRIPTS "${CMAKE_CURRENT_LIST_DIR}/NormaliseZip.cmake")
set(CPACK_VERBATIM_VARIABLES ON)
include(CPack)
