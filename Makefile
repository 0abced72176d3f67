# Thin front over CMake: set up, build, test, compile the example.
BUILD ?= build
SAN_BUILD ?= build-sanitize
JOBS ?= $(shell nproc 2>/dev/null || echo 2)

.PHONY: all setup build example test test-sanitize bench clean

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
	cd $(SAN_BUILD) && ASAN_OPTIONS=detect_leaks=0:abort_on_error=0 UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 \
	  ctest --output-on-failure -j $(JOBS)

bench: build
	./$(BUILD)/zkt_bench
	./$(BUILD)/zkt_bench_schema

clean:
	rm -rf $(BUILD) $(SAN_BUILD) out
