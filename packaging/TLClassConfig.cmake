# find_package(TLClass): the target TLClass::TLClass, and TLClass::GenApi, TLClass::GenTL and TLClass::support below it.
# Includes start where they do in Norvik's own tree: #include "TLClass/TLClassMain/ITLManager.h".
include(CMakeFindDependencyMacro)
find_dependency(Threads)
find_dependency(Boost 1.74 COMPONENTS filesystem)
find_dependency(ZLIB)
find_dependency(pugixml)
include("${CMAKE_CURRENT_LIST_DIR}/TLClassTargets.cmake")
