# The commands that people type. Everything they need, they install or build.
#
#   make demo    set up, build, compile the examples, run the main one on a real file
#   make test    set up, build, run every test
#   make         build the tree that users take: build/dist  (also: make dist)
#   make sweep   the tests that go through many values, at full size
#   make soak    threads under load for minutes: VEXRT_SOAK seconds (300)
#   make bench   set up, build, run the benchmarks against the peers
#   make lint    formatting and static analysis
#   make clean   remove the build folder

BUILD := build
DIST  := $(BUILD)/dist

.PHONY: all dist demo test test-programs sweep soak bench lint clean setup examples
all: dist

setup:
	@tools/setup build run

dist: setup
	@test -f $(BUILD)/lib/build.ninja || cmake -S . -B $(BUILD)/lib -G Ninja --log-level=WARNING
	@cmake --build $(BUILD)/lib

examples: dist
	@test -f $(BUILD)/examples/build.ninja || cmake -S examples -B $(BUILD)/examples -G Ninja \
	    --log-level=WARNING --toolchain $(CURDIR)/$(DIST)/cmake/vexrt-toolchain.cmake
	@cmake --build $(BUILD)/examples

demo: examples
	@tools/demo

test-programs: examples
	@tools/setup build run test
	@test -f $(BUILD)/tests/build.ninja || cmake -S tests -B $(BUILD)/tests -G Ninja \
	    --log-level=WARNING --toolchain $(CURDIR)/$(DIST)/cmake/vexrt-toolchain.cmake
	@cmake --build $(BUILD)/tests

test: test-programs
	@tools/test

sweep: test-programs
	@VEXRT_SWEEP=full tools/test -L sweep --verbose

soak: test-programs
	@VEXRT_SOAK=$${VEXRT_SOAK:-300} tools/test -L soak --verbose

bench: dist
	@tools/setup build run bench
	@bench/run

lint: dist
	@tools/setup lint
	@tools/lint

clean:
	rm -rf $(BUILD)
