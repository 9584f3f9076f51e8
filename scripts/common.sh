# Shared by the scripts: where the tree is, and how it is built.
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
# Clones in other folders share what was compiled: paths below the root count relative to it.
export CCACHE_BASEDIR=$root CCACHE_NOHASHDIR=true
export CMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER-$(command -v ccache || true)}

# build PRESET: configures and builds, quietly unless something fails.
build() {
    cd "$root"
    cmake --preset "$1" >/dev/null
    cmake --build --preset "$1" -- --quiet
}
