# Writes a C++ source that holds every profile JSON as a string:
#   cmake -DOUT=<file> -DDIR=<profiles dir> -P embed_profiles.cmake
file(GLOB profiles "${DIR}/*.json")
list(SORT profiles)
set(body "// Generated from sim/profiles/*.json; do not edit.\n#include \"sim/profiles.h\"\n\nnamespace Sim {\n\nconst std::vector<Profile>& Profiles() {\n    static const std::vector<Profile> all = {\n")
foreach(p IN LISTS profiles)
  get_filename_component(name "${p}" NAME_WE)
  file(READ "${p}" text)
  string(APPEND body "        {\"${name}\", R\"tesk_profile(${text})tesk_profile\"},\n")
endforeach()
string(APPEND body "    };\n    return all;\n}\n\n}  // namespace Sim\n")
file(WRITE "${OUT}.tmp" "${body}")
execute_process(COMMAND ${CMAKE_COMMAND} -E copy_if_different "${OUT}.tmp" "${OUT}")
