# Shared by scripts/run and scripts/test: set-up, build directory and compiler cache.
# Sourced, not run.
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"

"$root/scripts/setup"

if [ "${QUILLMERE_SANITIZE:-0}" != 0 ]; then
  build_dir="$root/build-sanitize"
  cmake_flags=(-DQUILLMERE_SANITIZE=ON)
else
  build_dir="$root/build"
  cmake_flags=(-DQUILLMERE_SANITIZE=OFF)
fi
# CI treats warnings as errors.
if [ -n "${CI:-}" ]; then
  cmake_flags+=(-DQUILLMERE_WERROR=ON)
else
  cmake_flags+=(-DQUILLMERE_WERROR=OFF)
fi

# Precompiled headers and ccache work together only with these allowances.
export CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
export CCACHE_BASEDIR="$root"
export CCACHE_MAXSIZE=${CCACHE_MAXSIZE:-5G}

configure_and_build() {
  if [ ! -f "$build_dir/build.ninja" ]; then
    cmake -S "$root" -B "$build_dir" -G Ninja "${cmake_flags[@]}" >/dev/null
  else
    cmake "$build_dir" "${cmake_flags[@]}" >/dev/null
  fi
  cmake --build "$build_dir" "$@"
}

xvfb_args=(-a -s "-screen 0 1920x1080x24 +extension GLX +render -noreset")
