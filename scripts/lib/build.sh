# Sourced by run, test and the demonstration.

# ccache knows a source again in another checkout.
export CCACHE_BASEDIR=$PWD CCACHE_NOHASHDIR=true

# build PRESET [TARGET...]: configures and builds in build/PRESET, showing the progress.
build() {
    local preset=$1
    shift
    echo "Building (preset $preset) in build/$preset ..."
    mkdir -p build
    if ! cmake --preset "$preset" >"build/configure-$preset.log" 2>&1; then
        cat "build/configure-$preset.log" >&2
        echo "CMake could not configure the build; its message is above." >&2
        return 1
    fi
    if ! cmake --build --preset "$preset" ${1:+--target "$@"}; then
        echo "The build failed; the compiler's message is above." >&2
        return 1
    fi
}
