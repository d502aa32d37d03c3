# Configures and builds the library for the real host, with stand-ins for its headers and its import library.
execute_process(COMMAND ${CMAKE_COMMAND} -S ${SOURCE} -B ${BUILD} -G Ninja --toolchain ${TOOLCHAIN}
    -D CMAKE_BUILD_TYPE=Release "-DCMAKE_CXX_FLAGS_RELEASE=-O0 -isystem ${MFC}" -D BUILD_SHARED_LIBS=ON
    -D LOMLISP_UNITY=ALL -D LOMLISP_MFC=ON -D LOMLISP_HOST_SDK=${SDK} -D LOMLISP_HOST_LIBRARIES=${HOST}
    -D CMAKE_LIBRARY_OUTPUT_DIRECTORY=${BUILD}/bin -D LOMLISP_MODULE_SUFFIX=.module
  COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET)
execute_process(COMMAND ${CMAKE_COMMAND} --build ${BUILD} -j1 COMMAND_ERROR_IS_FATAL ANY)
