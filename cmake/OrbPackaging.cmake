# Debian packages of the installed tree, one per install component (cpack -G DEB in the build folder):
#   liborbdatatypes1      the shared libraries and orbdt
#   liborbdatatypes-dev   the headers and the CMake package; needs the runtime, Boost's and the JDK's headers
#   liborbdatatypes-java  korvax-graphics-types.jar, which the Java bridge loads from beside the libraries
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME liborbdatatypes)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "orbdatatypes developers")
set(CPACK_PACKAGE_CONTACT "orbdatatypes developers <orbdatatypes@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Property data types of the Korvax graphics objects, with their reference host")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL runtime development java)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
# Shipped libraries carry no debug information; gzip keeps making the packages quick.
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE gzip)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME liborbdatatypes${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS "libc6, libstdc++6, libgcc-s1, libedit2")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SUGGESTS "openjdk-17-jre-headless, liborbdatatypes-java")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME liborbdatatypes-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
    "liborbdatatypes${PROJECT_VERSION_MAJOR} (= ${PROJECT_VERSION}), libboost-dev (>= 1.74), openjdk-17-jdk-headless")

set(CPACK_DEBIAN_JAVA_PACKAGE_NAME liborbdatatypes-java)
set(CPACK_DEBIAN_JAVA_PACKAGE_SECTION java)
set(CPACK_DEBIAN_JAVA_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_JAVA_PACKAGE_DEPENDS "liborbdatatypes${PROJECT_VERSION_MAJOR} (= ${PROJECT_VERSION})")
include(CPack)
