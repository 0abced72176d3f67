# Thin front over CMake: set up, build, test, compile the example.
BUILD ?= build
SAN_BUILD ?= build-sanitize
FUZZ_BUILD ?= build-fuzz
FUZZ_SECONDS ?= 300
JOBS ?= $(shell nproc 2>/dev/null || echo 2)

.PHONY: all setup build example test test-sanitize fuzz bench bench-tools bench-peers clean

all: build

setup:
	@sh tools/setup.sh

build: setup
	cmake -S . -B $(BUILD) -DZKT_WERROR=ON
	cmake --build $(BUILD) -j $(JOBS)

example: build
	mkdir -p out
	./$(BUILD)/bin/zktcomp -o out examples/example.sch

test: build
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

test-sanitize: setup
	cmake -S . -B $(SAN_BUILD) -DZKT_WERROR=ON -DZKT_SANITIZE=ON
	cmake --build $(SAN_BUILD) -j $(JOBS)
	cd $(SAN_BUILD) && ASAN_OPTIONS=detect_leaks=1:abort_on_error=0 UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 \
	  ctest --output-on-failure -j $(JOBS)

# Each fuzz target for FUZZ_SECONDS, one after the other (clang 14 with libFuzzer).
fuzz:
	@sh tools/setup.sh fuzz
	cmake -S . -B $(FUZZ_BUILD) -DZKT_WERROR=ON -DZKT_FUZZ=ON -DZKT_TESTS=OFF \
	  -DCMAKE_C_COMPILER=clang-14 -DCMAKE_CXX_COMPILER=clang++-14
	cmake --build $(FUZZ_BUILD) -j $(JOBS) --target fuzz_compile fuzz_load_dictionary
	sh tools/fuzz.sh $(FUZZ_BUILD) $(FUZZ_SECONDS)

# The benchmark runs the installed compiler and a small driver of the installed library.
BENCH_PREFIX = $(abspath $(BUILD))/bench-prefix
BENCH_ARGS = $(BENCH_PREFIX)/bin/zktcomp $(BENCH_PREFIX)/bin/zkt_bench_load

bench-tools: build
	cmake --install $(BUILD) --prefix $(BENCH_PREFIX) >/dev/null
	cc -std=c99 -O2 -Wall -I$(BENCH_PREFIX)/include bench/bench_load.c -o $(BENCH_PREFIX)/bin/zkt_bench_load \
	  -L$(BENCH_PREFIX)/lib -lzktcomp -Wl,-rpath,$(BENCH_PREFIX)/lib

bench: bench-tools
	./$(BUILD)/zkt_bench_schema $(BENCH_ARGS)

# The same types in three peer schema languages, run alternating with ours; installs the peers as root.
bench-peers: bench-tools
	@command -v flatc >/dev/null && command -v protoc >/dev/null && command -v capnp >/dev/null || \
	  { apt-get update && DEBIAN_FRONTEND=noninteractive apt-get install -y flatbuffers-compiler \
	    protobuf-compiler capnproto; }
	./$(BUILD)/zkt_bench_schema $(BENCH_ARGS) --peers

clean:
	rm -rf $(BUILD) $(SAN_BUILD) $(FUZZ_BUILD) out
