# vellum_python_tests(LEVEL FILES …): every test method of these unittest files of the calling
# folder is a ctest of its own, labelled with its level and run against the built programs.
find_package(Python3 3.11 REQUIRED COMPONENTS Interpreter)

function(vellum_python_tests level)
  foreach(file ${ARGN})
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
    cmake_path(GET file STEM module)
    file(STRINGS ${file} lines REGEX "^class |^    def test_")
    foreach(line ${lines})
      if(line MATCHES "^class ([A-Za-z0-9_]+)")
        set(class ${CMAKE_MATCH_1})
      elseif(line MATCHES "def (test_[a-z0-9_]+)")
        set(name ${level}.${class}.${CMAKE_MATCH_1})
        add_test(NAME ${name} WORKING_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}
                 COMMAND ${Python3_EXECUTABLE} -m unittest ${module}.${class}.${CMAKE_MATCH_1})
        set_tests_properties(
          ${name} PROPERTIES LABELS ${level} TIMEOUT 180 ENVIRONMENT
          "PYTHONPATH=${PROJECT_SOURCE_DIR}:${PROJECT_SOURCE_DIR}/tests/support;PYTHONDONTWRITEBYTECODE=1;VELLUM_BIN=${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
      endif()
    endforeach()
  endforeach()
endfunction()
