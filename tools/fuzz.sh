# shellcheck shell=bash
# The fuzzers (fuzzers/*_fuzz.cpp): programs that look for inputs that break a property. To be sourced,
# after tools/console.sh.

# Their names, one a line: "company", ...
fuzzers() { basename -a -s _fuzz.cpp "$ROOT"/fuzzers/*_fuzz.cpp; }

build_fuzzers() { configure_and_build native-fuzz fuzzers; }

# fuzz NAME SECONDS [OPTION...]: looks for so many seconds. Fails when it finds something; the input
# is then left in build/fuzz/NAME-*, and the fuzzer, given that file, does the same again.
fuzz() {
  local name="$1" seconds="$2" words="$ROOT/fuzzers/$1.dict"
  shift 2
  if [[ -f "$words" ]]; then set -- -dict="$words" "$@"; fi
  mkdir -p "$BUILD/fuzz"
  # A trace of each allocation would cost most of the time.
  ASAN_OPTIONS=malloc_context_size=3 timeout --kill-after=5 $((seconds + 120)) \
    "$BUILD/native-fuzz/bin/${name}_fuzz" -max_total_time="$seconds" -rss_limit_mb=2048 -timeout=20 \
    -max_len=512 -len_control=0 -artifact_prefix="$BUILD/fuzz/$name-" "$@"
}

# What a fuzzer's log says that it has done: "50322 runs, 918 branches, 2307 features".
fuzzed() {
  sed -nE 's/^#([0-9]+)\s+DONE\s+cov: ([0-9]+) ft: ([0-9]+).*/\1 runs, \2 branches, \3 features/p' "$1"
}
