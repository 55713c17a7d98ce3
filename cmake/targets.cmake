# One static library per folder of src/. DEPENDS names the folders (and outside libraries) it may
# include from; a library that is not named there is not on the link line, so an arrow that points
# the wrong way fails to link.
function(oru_folder name)
  cmake_parse_arguments(ARG "" "" "DEPENDS" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  add_library(oru_${name} STATIC ${sources})
  target_include_directories(oru_${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(oru_${name} PUBLIC ${ARG_DEPENDS})
endfunction()

# The template files lie beside each program that starts a session.
file(GLOB ORU_TEMPLATES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/share/*)
function(oru_templates program)
  add_custom_command(TARGET ${program} POST_BUILD
    COMMAND ${CMAKE_COMMAND} -E copy_if_different ${ORU_TEMPLATES} $<TARGET_FILE_DIR:${program}>)
endfunction()

# One test program per folder of tests/, mirroring src/.
function(oru_test name)
  cmake_parse_arguments(ARG "" "" "DEPENDS" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.cpp)
  if(NOT sources)
    return()
  endif()
  add_executable(oru_test_${name} ${sources})
  target_include_directories(oru_test_${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_compile_definitions(oru_test_${name} PRIVATE
    ORU_SOURCE_DIR="${PROJECT_SOURCE_DIR}" ORU_BINARY_DIR="${PROJECT_BINARY_DIR}")
  target_link_libraries(oru_test_${name} PRIVATE ${ARG_DEPENDS} GTest::gtest GTest::gtest_main)
  gtest_discover_tests(oru_test_${name} PROPERTIES TIMEOUT 120)
endfunction()
