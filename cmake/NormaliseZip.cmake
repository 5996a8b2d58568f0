# Run by CPack when the archive is made: equal contents become equal bytes.
find_program(QELKIT_PYTHON NAMES python3 python REQUIRED)
foreach(archive ${CPACK_PACKAGE_FILES})
  execute_process(COMMAND_ERROR_IS_FATAL ANY
    COMMAND "${QELKIT_PYTHON}" "${CMAKE_CURRENT_LIST_DIR}/../tools/normalise_zip.py" "${archive}")
endforeach()
