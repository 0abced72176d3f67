# Thin front over CMake: set up, build, test, compile the example.
BUILD ?= build
SAN_BUILD ?= build-sanitize
FUZZ_BUILD ?= build-fuzz
FUZZ_SECONDS ?= 300
JOBS ?= $(shell nproc 2>/dev/null || echo 2)

.PHONY: all setup build example test test-sanitize fuzz bench clean

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

bench: build
	./$(BUILD)/zkt_bench
	./$(BUILD)/zkt_bench_schema

clean:
	rm -rf $(BUILD) $(SAN_BUILD) $(FUZZ_BUILD) out
