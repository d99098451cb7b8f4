# sg_generate_classes(<target> <output dir> <description files...>)
# Runs tools/genmixins.py on each <Class>.def, adds the generated .gen.cpp to
# <target> and puts <output dir> on its include path (headers are
# <output dir>/sgutils/objects/<Class>.gen.h).
find_package(Python3 REQUIRED COMPONENTS Interpreter)

function(sg_generate_classes target outdir)
  set(files)
  foreach(def IN LISTS ARGN)
    get_filename_component(cls "${def}" NAME_WE)
    set(out "${outdir}/sgutils/objects/${cls}")
    add_custom_command(
      OUTPUT "${out}.gen.h" "${out}.gen.cpp"
      COMMAND Python3::Interpreter "${PROJECT_SOURCE_DIR}/tools/genmixins.py" "${def}" "${outdir}"
      DEPENDS "${def}" "${PROJECT_SOURCE_DIR}/tools/genmixins.py"
      COMMENT "Generating ${cls}.gen.h and ${cls}.gen.cpp"
      VERBATIM)
    list(APPEND files "${out}.gen.h" "${out}.gen.cpp")
    target_sources(${target} PRIVATE "${out}.gen.cpp")
  endforeach()
  add_custom_target(${target}_generated DEPENDS ${files})
  add_dependencies(${target} ${target}_generated)
  target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${outdir}>)
endfunction()
