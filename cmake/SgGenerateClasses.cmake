# sg_generate_classes(<target> <output dir> <description files...>)
# Runs tools/genmixins.py on each <Class>.def, adds the generated .gen.cpp to
# <target> and puts <output dir> on its include path (headers are
# <output dir>/sgutils/objects/<Class>.gen.h). The generator writes a file
# only when its text changes, so an untouched class is not recompiled.
#
# sg_generate_registrations(<target> <header> <description files...>)
# Writes <header>, the list of the classes' registration functions in
# parent order, from the same descriptions.
find_package(Python3 REQUIRED COMPONENTS Interpreter)

set(SG_CLASSGEN "${PROJECT_SOURCE_DIR}/tools/genmixins.py")
file(GLOB SG_CLASSGEN_SOURCES CONFIGURE_DEPENDS
  "${PROJECT_SOURCE_DIR}/tools/classgen/*.py" "${PROJECT_SOURCE_DIR}/tools/classgen/*.txt")

function(sg_generate_classes target outdir)
  set(files)
  foreach(def IN LISTS ARGN)
    get_filename_component(cls "${def}" NAME_WE)
    set(out "${outdir}/sgutils/objects/${cls}")
    add_custom_command(
      OUTPUT "${out}.gen.h" "${out}.gen.cpp"
      COMMAND Python3::Interpreter "${SG_CLASSGEN}" "${def}" "${outdir}"
      DEPENDS "${def}" "${SG_CLASSGEN}" ${SG_CLASSGEN_SOURCES}
      COMMENT "Generating ${cls}.gen.h and ${cls}.gen.cpp"
      VERBATIM)
    list(APPEND files "${out}.gen.h" "${out}.gen.cpp")
    target_sources(${target} PRIVATE "${out}.gen.cpp")
  endforeach()
  # One target per output folder, so that a target may generate into two.
  string(MD5 folder "${outdir}")
  string(SUBSTRING "${folder}" 0 8 folder)
  add_custom_target(${target}_generated_${folder} DEPENDS ${files})
  add_dependencies(${target} ${target}_generated_${folder})
  target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${outdir}>)
endfunction()

function(sg_generate_registrations target header)
  add_custom_command(
    OUTPUT "${header}"
    COMMAND Python3::Interpreter "${SG_CLASSGEN}" --registrations "${header}" ${ARGN}
    DEPENDS ${ARGN} "${SG_CLASSGEN}" ${SG_CLASSGEN_SOURCES}
    COMMENT "Generating the list of class registrations"
    VERBATIM)
  add_custom_target(${target}_registrations DEPENDS "${header}")
  add_dependencies(${target} ${target}_registrations)
  get_filename_component(dir "${header}" DIRECTORY)
  target_include_directories(${target} PRIVATE "${dir}")
  # The source that includes the list is rebuilt when the list changes.
  set_source_files_properties("${PROJECT_SOURCE_DIR}/src/startup/GeneratedClasses.cpp"
    TARGET_DIRECTORY ${target} PROPERTIES OBJECT_DEPENDS "${header}")
endfunction()
