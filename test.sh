#!/bin/bash
# Sets up, builds and runs the tests.
set -euo pipefail

usage() {
    cat <<'TEXT'
Usage: ./test.sh [--long] [--sanitize] [--fuzz] [--lint [--all]]

Installs what is missing from Debian 12, builds the tests and runs them all.

  --long      Runs the tests that take their time as well.
  --sanitize  Runs all tests under the address and undefined behaviour sanitizers, then under the thread sanitizer.
  --fuzz      Feeds each reader of foreign data with made-up input for 60 seconds.
  --lint      Reads the code: qmllint, clang-format, and clang-tidy over what differs from the main branch;
              with --all over everything.
  --help      Prints this.
TEXT
}

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
cd "$here"
. packaging/debian-packages.sh
export LC_ALL=C.UTF-8

mode='test'
all=no
while [ $# -gt 0 ]; do
    case $1 in
        --long) export QUILLMERE_LONG_TESTS=1 ;;
        --sanitize) mode=sanitize ;;
        --fuzz) mode=fuzz ;;
        --lint) mode=lint ;;
        --all) all=yes ;;
        --help)
            usage
            exit 0
            ;;
        *)
            usage >&2
            exit 2
            ;;
    esac
    shift
done

build() {
    local preset=$1
    shift
    [ -f "build/$preset/build.ninja" ] || cmake --preset "$preset"
    cmake --build --preset "$preset" "$@"
}

# ctest says at the end how many tests ran and which failed.
run_tests() {
    build "$1"
    # One more than there are cores: those that use the program as a person does mostly wait.
    ctest --test-dir "build/$1" --output-on-failure --no-tests=error --timeout "${2:-300}" --parallel "$(($(nproc) + 1))"
}

sanitize() {
    local failed=0
    run_tests sanitize 1200 || failed=1
    run_tests threads 1200 || failed=1
    return $failed
}

fuzz() {
    local target failed=0 found=0
    [ -f build/fuzz/build.ninja ] || cmake --preset fuzz
    cmake --build --preset fuzz --target fuzzers
    for target in build/fuzz/tests/Fuzz/*Fuzzer; do
        [ -x "$target" ] || continue
        found=$((found + 1))
        echo "== ${target##*/}"
        mkdir -p "build/fuzz/corpus/${target##*/}"
        "$target" -max_total_time=60 -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 \
            -artifact_prefix=build/fuzz/ "build/fuzz/corpus/${target##*/}" "tests/Fuzz/seeds/${target##*/}" || failed=1
    done
    [ $found -gt 0 ] || { echo "There is nothing to fuzz." >&2; return 1; }
    return $failed
}

sources() {
    git ls-files --cached --others --exclude-standard -- "$@"
}

changed_sources() {
    local base
    base=$(git merge-base HEAD main 2>/dev/null || git merge-base HEAD origin/main 2>/dev/null || echo HEAD)
    { git diff --name-only --diff-filter=d "$base" -- "$@"
      git ls-files --others --exclude-standard -- "$@"; } | sort -u
}

lint() {
    local failed=0 files
    build debug
    echo "== qmllint"
    cmake --build --preset debug --target all_qmllint || failed=1
    echo "== clang-format"
    mapfile -t files < <(sources '*.cpp' '*.h')
    clang-format --dry-run -Werror "${files[@]}" || failed=1
    echo "== clang-tidy"
    # Each file is read by itself, and Clang cannot read the headers that GCC has precompiled.
    cmake --preset lint
    mapfile -t files < <(if [ $all = yes ]; then sources '*.cpp'; else changed_sources '*.cpp'; fi)
    [ ${#files[@]} -eq 0 ] ||
        printf '%s\0' "${files[@]}" |
        xargs -0 -n 1 -P "$(nproc)" clang-tidy -p build/lint --quiet --warnings-as-errors='*' || failed=1
    return $failed
}

case $mode in
    test)
        install_packages build run screen test
        run_tests debug
        ;;
    sanitize)
        install_packages build run screen test
        sanitize
        ;;
    fuzz)
        install_packages build run test fuzz
        fuzz
        ;;
    lint)
        install_packages build run screen test lint
        lint
        ;;
esac
